// qvlog_test.cpp: qvlog's summaries, check and repair on fixture months, run natively.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "tests/native/qvlog_fixture.h"
#include "tools/qvlog/logcheck.h"
#include "tools/qvlog/qvlog.h"
#include "trafficlog/logformat.h"

namespace {

class Qvlog : public ::testing::Test {
protected:
    void SetUp() override
    {
        char folder[] = "/tmp/qvlog_test.XXXXXX";
        ASSERT_TRUE(mkdtemp(folder));
        dir_ = folder;
        Write("202602.log", February2026());
        Write("202603.log", March2026());
    }
    void TearDown() override { ASSERT_EQ(0, system(("rm -rf " + dir_).c_str())); }

    std::string Path(const std::string &name) { return dir_ + "/" + name; }
    void Write(const std::string &name, const LogBytes &bytes)
    {
        std::ofstream(Path(name), std::ios::binary).write((const char *)bytes.data(), bytes.size());
    }
    LogBytes Read(const std::string &name)
    {
        std::ifstream f(Path(name), std::ios::binary);
        return LogBytes(std::istreambuf_iterator<char>(f), {});
    }
    // qvlog with these words, in the fixture folder on 1 March 2026, or as they stand.
    QvlogResult Run(std::vector<std::string> words, bool inFolder = true)
    {
        if (inFolder)
            words.insert(words.end(), {"--dir", dir_, "--today", "2026-03-01"});
        return RunQvlogWords(words);
    }
    std::string dir_;
};

// The figures of the fixture months as the usage dialog reads them, worked
// by hand. March: the reads go in 12-byte steps from the start, so the cut
// record swallows the first 7 bytes of (3, 2): day 3 reads received
// 0x00020310 and transmitted 0x0003E800; what follows lands in slot 0 (day
// bytes 0), which no view shows, and day 31 is lost until repaired. The
// month's total is the CSV export's: it takes those two day-0 reads
// (received 0x00171F00, transmitted 0x500 each) as well.
TEST_F(Qvlog, SummariesAgainstFiguresWorkedByHand)
{
    const char *day2 = "\"2026-03-02\",\"4294967000\",\"50\",\"4294967050\"";
    const char *day3 = "\"2026-03-03\",\"131856\",\"256000\",\"387856\"";
    const char *march = "\"2026-03\",\"4298129791\",\"259218\",\"4298389009\"";
    const char *february = "\"2026-02\",\"4294968295\",\"2001\",\"4294970296\"";
    const char *year = "\"8593098086\",\"261219\",\"8593359305\"";
    const struct { std::vector<std::string> words, lines; size_t rows; } cases[] = {   // lines in order; rows: without the header
        {{"days", "2026-03"}, {"\"period\",\"received\",\"transmitted\",\"total\"", "\"2026-03-01\",\"407\",\"608\",\"1015\"",
                               day2, day3, "\"2026-03-31\",\"0\",\"0\",\"0\"", march}, 32},
        {{"days", "2026-02"}, {"\"2026-02-28\",\"4294967295\",\"1\",\"4294967296\"", february}, 29},
        // The later of the two hour-5 records wins, as in the dialog's hourly view.
        {{"hours", "2026-03-01"}, {"\"2026-03-01T05\",\"7\",\"8\",\"15\"", "\"2026-03-01\",\"107\",\"208\",\"315\""}, 25},
        {{"months", "2026"}, {"\"2026-01\",\"0\",\"0\",\"0\"", february, march, std::string("\"2026\",") + year}, 13},
        {{}, {march, february, "\"2026-01\",\"0\",\"0\",\"0\"", std::string("\"total\",") + year}, 5},
        {{"days", "2026-03", "--top", "2"}, {day2, day3, march}, 3},
    };
    for (auto &c : cases) {
        std::vector<std::string> words = c.words;
        words.push_back("--csv");
        std::string what = ::testing::PrintToString(c.words);
        QvlogResult r = Run(words);
        // March is damaged: the figures come with a warning and status 1.
        bool damaged = c.words.empty() || c.words[1] != "2026-02";
        EXPECT_EQ(damaged ? QVLOG_DAMAGED : QVLOG_OK, r.status) << what << r.err;
        EXPECT_EQ(damaged, r.err.find("202603.log: damaged (cut record at byte 48, 1 duplicate hour)") != std::string::npos)
            << what << r.err;
        size_t at = 0;
        for (auto &line : c.lines) {
            at = r.out.find(line + "\n", at);
            EXPECT_NE(std::string::npos, at) << what << ": " << line << " in\n" << r.out;
        }
        EXPECT_EQ(c.rows + 1, (size_t)std::count(r.out.begin(), r.out.end(), '\n')) << what << r.out;
    }
    // The table for people: aligned columns in the dialog's units.
    QvlogResult r = Run({"days", "2026-02"});
    EXPECT_NE(std::string::npos, r.out.find("Daily traffic for Feb 2026\n")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\nFeb 01, 2026          0.98KB       1.95KB  2.93KB\n")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\nTotal for Feb 2026    4.00GB       1.95KB  4.00GB\n")) << r.out;
    std::vector<size_t> widths;   // heads, 28 days, rule, total
    for (size_t at = r.out.find('\n') + 1, end; (end = r.out.find('\n', at)) != std::string::npos; at = end + 1)
        widths.push_back(end - at);
    EXPECT_EQ(std::vector<size_t>(31, widths[0]), widths) << r.out;
}

// The JSON parsed by Python's own parser, and its figures read back.
TEST_F(Qvlog, JsonParsesAndHoldsTheFigures)
{
    std::ofstream(Path("out.json")) << Run({"days", "2026-03", "--json"}).out;
    std::string script = "import json,sys; d=json.load(open(sys.argv[1])); r=d['rows']; t=d['total'];"
                         "print(d['view'], d['folder']==sys.argv[2], len(r), r[0]['period'], r[0]['received'],"
                         " r[0]['transmitted'], r[0]['total'], r[1]['received'], t['period'], t['received'], t['total'],"
                         " all(set(x)=={'period','received','transmitted','total'} for x in r))";
    FILE *p = popen(("python3 -c \"" + script + "\" " + Path("out.json") + " " + dir_).c_str(), "r");
    char line[512] = "";
    ASSERT_TRUE(p && fgets(line, sizeof line, p));
    EXPECT_EQ(0, pclose(p));
    EXPECT_STREQ("days True 31 2026-03-01 407 608 1015 4294967000 2026-03 4298129791 4298389009 True\n", line);
}

TEST_F(Qvlog, CheckReportsEachFaultAndItsStatus)
{
    LogBytes outOfRange = LogRecord(31, 0, 1, 1) + LogRecord(29, 3, 1, 1) + LogRecord(5, 24, 1, 1);
    Write("202602x.log", outOfRange);   // no month in the name: any day 1-31 passes
    Write("202604.log", LogRecord(2, 1, 1, 1) + LogRecord(1, 1, 1, 1));
    Write("202605.log", {});
    mkdir(Path("202606.log").c_str(), 0755);
    Write("202802.log", outOfRange);   // February has no day 31, and a day 29 in 2028 only
    Write("202604.log.bak", outOfRange);
    const struct { std::string file; int status; std::string lines; } cases[] = {
        {"202602.log", 0, "202602.log: 24 bytes, 2 records: sound\n"},
        {"202603.log", 1,
         "202603.log: 77 bytes, 6 records: damaged\n"
         "  cut record: 5 bytes at byte 48; 2 records after it are out of step by 5 bytes\n"
         "  duplicate hours: 1 record (day 1 hour 5 at byte 36)\n"
         "  out of order: 1 record (day 1 hour 5 at byte 36); the clock went back, the readers do not mind\n"},
        {"202604.log", 0,
         "202604.log: 24 bytes, 2 records: sound\n"
         "  out of order: 1 record (day 1 hour 1 at byte 12); the clock went back, the readers do not mind\n"},
        {"202602x.log", 1,
         "202602x.log: 36 bytes, 3 records: damaged\n  the name is not YYYYMM.log: days 1-31 are taken as valid\n"
         "  out of range: 1 record (day 5 hour 24 at byte 24)\n"
         "  out of order: 1 record (day 29 hour 3 at byte 12); the clock went back, the readers do not mind\n"},
        {"202802.log", 1,
         "202802.log: 36 bytes, 3 records: damaged\n"
         "  out of range: 2 records (day 31 hour 0 at byte 0; day 5 hour 24 at byte 24)\n"},
        {"202605.log", 1, "202605.log: empty: damaged\n"},
        {"202606.log", 1, "202606.log: cannot be read: a folder, not a log file\n"},
    };
    for (auto &c : cases) {
        QvlogResult r = Run({"check", Path(c.file)}, false);
        EXPECT_EQ(c.status, r.status) << c.file << r.out;
        EXPECT_EQ(dir_ + "/" + c.lines, r.out) << c.file;
    }
    // The whole folder: only YYYYMM.log names, a sound set and a damaged one.
    QvlogResult all = Run({"check"});
    EXPECT_EQ(1, all.status);
    for (const char *name : {"202602.log", "202603.log", "202604.log", "202605.log", "202606.log", "202802.log"})
        EXPECT_NE(std::string::npos, all.out.find(dir_ + "/" + name + ":")) << name;
    EXPECT_TRUE(all.out.find("202602x") == std::string::npos && all.out.find(".bak") == std::string::npos) << all.out;
}

// The realigned records, invalid ones dropped and duplicates added, read by
// the dialog's own parser as every valid record of the original says.
TEST_F(Qvlog, RepairRoundTrip)
{
    QvlogResult r = Run({"repair", Path("202603.log")}, false);
    EXPECT_EQ(0, r.status) << r.err;
    EXPECT_EQ(Path("202603.log") + ": 5 records kept, 1 duplicate added into their first, 0 invalid dropped, "
              "5 cut bytes dropped\n  written to " + Path("202603.log.repaired") + "\n", r.out);
    EXPECT_EQ(March2026(), Read("202603.log"));   // never in place unasked
    EXPECT_EQ(LogRecord(1, 0, 100, 200) + LogRecord(1, 5, 307, 408) + LogRecord(2, 10, 4294967000u, 50) +
                  LogRecord(3, 2, 1000, 1000) + LogRecord(31, 23, 5, 6), Read("202603.log.repaired"));
    EXPECT_EQ(0, Run({"check", Path("202603.log.repaired")}, false).status);

    // In place: the original goes to .bak, and a second run refuses to overwrite that backup.
    LogBytes original = LogRecord(4, 1, 4000000000u, 1) + LogRecord(40, 1, 9, 9) + LogRecord(4, 1, 300000000u, 2) +
                        LogRecord(4, 1, 3, 3);
    Write("202604.log", original);
    r = Run({"repair", "--in-place", Path("202604.log")}, false);
    EXPECT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("2 records kept, 1 duplicate added into their first, 1 invalid dropped, "
                                            "0 cut bytes dropped, 1 duplicate kept apart (their sum passes 2^32)")) << r.out;
    EXPECT_EQ(original, Read("202604.log.bak"));
    // The two whose sum passes 2^32 stay apart, so the daily sum reads the same.
    EXPECT_EQ(LogRecord(4, 1, 4000000003u, 4) + LogRecord(4, 1, 300000000u, 2), Read("202604.log"));
    r = Run({"repair", "--in-place", Path("202604.log")}, false);
    EXPECT_TRUE(r.status == 1 && r.err.find("202604.log.bak exists already") != std::string::npos) << r.err;
    EXPECT_EQ(LogRecord(4, 1, 4000000003u, 4) + LogRecord(4, 1, 300000000u, 2), Read("202604.log"));
}

// A cut anywhere in a full month is found where it is, whatever its length.
TEST(LogCheck, FindsACutAtEveryOffsetOfAFullMonth)
{
    LogBytes month;
    for (int d = 1; d <= 30; d++)
        for (int h = 0; h < 24; h += 3)
            month = month + LogRecord(d, h, d * 1000 + h, 5000 + d * 7);
    for (size_t record = 0; record < 240; record += 17) {
        for (size_t length = 1; length < 12; length += 3) {
            LogBytes bytes(month.begin(), month.begin() + record * 12 + length);
            bytes.insert(bytes.end(), month.begin() + record * 12, month.end());
            LogCheckReport r;
            CheckTrafficLog(bytes.data(), bytes.size(), 2026, 4, &r);
            ASSERT_EQ(1u, r.cuts.size()) << record << "+" << length;
            EXPECT_TRUE(r.cuts[0].offset == record * 12 && r.cuts[0].length == length) << record << "+" << length;
            EXPECT_EQ(240u, r.records.size());
            EXPECT_TRUE(r.duplicates.empty() && r.outOfRange.empty() && r.outOfOrder.empty()) << record;
        }
    }
}

// Hostile input: a clear message and a status, never a crash.
TEST_F(Qvlog, BadInputGetsAMessageAndAStatus)
{
    LogBytes noise(5000);
    srand(7);
    for (auto &b : noise)
        b = (unsigned char)rand();
    Write("202601.log", noise);
    Write("202512.log", {});
    mkdir(Path("202511.log").c_str(), 0755);
    mkdir(Path("sub").c_str(), 0755);
    const struct { std::vector<std::string> words; bool inFolder; int status; std::string err; } cases[] = {
        {{"--dir", "/nonexistent/qvlog"}, false, 2, "qvlog: /nonexistent/qvlog: no such folder"},
        {{}, false, 2, "qvlog: no log folder: give one with --dir FOLDER"},
        {{"days", "2026-13"}, true, 2, "not a date of the calendar: \"2026-13\" (want YYYY-MM)"},
        {{"days", "2026-03", "2026-04"}, true, 2, "days takes one date at most"},
        {{"--top", "0"}, true, 2, "--top wants a whole number from 1"},
        {{"weeks"}, true, 2, "unknown command \"weeks\""},
        {{"days", "2026-01"}, true, 1, "202601.log: damaged ("},
        {{"days", "2025-11"}, true, 1, "202511.log: cannot be read: a folder, not a log file"},
        {{"repair", "EMPTY"}, false, 1, "202512.log: empty: nothing to repair"},
        {{"check", "--dir", "SUB"}, false, 1, "no monthly logs (YYYYMM.log) in"},
    };
    for (auto &c : cases) {
        std::vector<std::string> words = c.words;
        for (auto &w : words)
            w = w == "EMPTY" ? Path("202512.log") : w == "SUB" ? Path("sub") : w;
        QvlogResult r = Run(words, c.inFolder);
        EXPECT_EQ(c.status, r.status) << ::testing::PrintToString(words) << r.err;
        EXPECT_NE(std::string::npos, r.err.find(c.err)) << ::testing::PrintToString(words) << ": " << r.err;
    }
    QvlogResult check = Run({"check", Path("202601.log")}, false);
    EXPECT_TRUE(check.status == 1 && check.out.find("202601.log: 5000 bytes, ") != std::string::npos) << check.out;
    EXPECT_EQ(0, Run({"--help"}, false).status);
}

} // namespace
