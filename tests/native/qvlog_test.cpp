// qvlog_test.cpp: qvlog's summaries, check and repair on fixture months, run natively.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <string>

#include "tests/native/qvlog_fixture.h"
#include "tools/qvlog/logcheck.h"
#include "tools/qvlog/qvlog.h"

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
    struct Result {
        int status;
        std::string out, err;
    };
    // qvlog run in-process with these words, in the fixture folder on 1 March 2026, or as they stand.
    Result Run(std::vector<std::string> words, bool inFolder = true)
    {
        if (inFolder)
            words.insert(words.end(), {"--dir", dir_, "--today", "2026-03-01"});
        words.insert(words.begin(), "qvlog");
        std::vector<char *> argv;
        for (auto &w : words)
            argv.push_back(&w[0]);
        FILE *files[2] = {tmpfile(), tmpfile()};
        Result r = {RunQvlog((int)argv.size(), argv.data(), files[0], files[1]), "", ""};
        std::string *texts[2] = {&r.out, &r.err};
        for (int i = 0; i < 2; i++) {
            rewind(files[i]);
            for (int c; (c = fgetc(files[i])) != EOF;)
                texts[i]->push_back((char)c);
            fclose(files[i]);
        }
        return r;
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
        Result r = Run(words);
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
    // The table for people: columns aligned, in the dialog's units.
    Result r = Run({"days", "2026-02"});
    EXPECT_NE(std::string::npos, r.out.find("Daily traffic for Feb 2026\n")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\nFeb 01, 2026          0.98KB       1.95KB  2.93KB\n")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\nTotal for Feb 2026    4.00GB       1.95KB  4.00GB\n")) << r.out;
}

// Check names each fault of the damaged March; repair realigns its records,
// adds the duplicate hour into its first and drops the cut bytes, beside the
// original, and what it writes checks sound.
TEST_F(Qvlog, CheckAndRepairTheDamagedMonth)
{
    Result r = Run({"check", Path("202603.log")}, false);
    EXPECT_EQ(1, r.status);
    EXPECT_EQ(Path("202603.log") + ": 77 bytes, 6 records: damaged\n"
              "  cut record: 5 bytes at byte 48; 2 records after it are out of step by 5 bytes\n"
              "  duplicate hours: 1 record (day 1 hour 5 at byte 36)\n"
              "  out of order: 1 record (day 1 hour 5 at byte 36); the clock went back, the readers do not mind\n", r.out);
    r = Run({"repair", Path("202603.log")}, false);
    EXPECT_EQ(Path("202603.log") + ": 5 records kept, 1 duplicate added into their first, 0 invalid dropped, "
              "5 cut bytes dropped\n  written to " + Path("202603.log.repaired") + "\n", r.out);
    EXPECT_EQ(March2026(), Read("202603.log"));
    EXPECT_EQ(LogRecord(1, 0, 100, 200) + LogRecord(1, 5, 307, 408) + LogRecord(2, 10, 4294967000u, 50) +
                  LogRecord(3, 2, 1000, 1000) + LogRecord(31, 23, 5, 6), Read("202603.log.repaired"));
    EXPECT_EQ(0, Run({"check", Path("202603.log.repaired")}, false).status);
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
            EXPECT_TRUE(r.cuts[0].offset == record * 12 && r.cuts[0].length == length && r.records.size() == 240u &&
                        r.duplicates.empty() && r.outOfRange.empty() && r.outOfOrder.empty()) << record << "+" << length;
        }
    }
}

} // namespace
