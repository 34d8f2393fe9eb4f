// qvlog_test.cpp: qvlog's figures against the usage dialog's reader and the CSV export on the same files.
#include "tests/support.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/text.h"
#include "tests/native/qvlog_fixture.h"
#include "tools/qvlog/qvlog.h"
#include "trafficlog/export.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"

namespace {

std::string Narrow(const std::wstring &wide)
{
    return std::string(wide.begin(), wide.end());   // the test folders are ASCII
}

std::vector<std::string> Words(const std::string &line)
{
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string w; in >> w;)
        words.push_back(w);
    return words;
}

class QvlogAgrees : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        dir_ = Narrow(g_item.dataFolder);
        Put(2026, 2, February2026());
        Put(2026, 3, March2026());
        // A full April of every hour, fields near 2^32 whose day sums pass it.
        LogBytes april;
        for (int d = 1; d <= 30; d++)
            for (int h = 0; h < 24; h++)
                april = april + LogRecord(d, h, 4294967295u - (uint32_t)(d * 977 + h), (uint32_t)d * 100003u + h);
        Put(2026, 4, april);
    }
    void Put(int year, int month, const LogBytes &bytes)
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(year, month, path);
        std::ofstream(std::filesystem::path(path), std::ios::binary).write((const char *)bytes.data(), bytes.size());
    }
    std::string dir_;
};

const struct { int year, month; } kMonths[] = {{2026, 2}, {2026, 3}, {2026, 4}};

// Every day and every hour, as the dialog's series hold them, in doubles.
TEST_F(QvlogAgrees, WithTheUsageDialogsSeries)
{
    for (auto m : kMonths) {
        std::vector<QvlogRow> rows;
        QvlogRow total;
        FILE *err = tmpfile();
        QvlogMonthDays(dir_, m.year, m.month, &rows, &total, err);
        fclose(err);
        double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
        int slots = ReadTrafficLog(0, m.year, m.month, 1, tx, rx, &max);
        ASSERT_EQ((size_t)slots, rows.size()) << m.month;
        for (int d = 1; d <= slots; d++) {
            EXPECT_EQ(tx[d], rows[d - 1].transmitted) << m.month << "-" << d;
            EXPECT_EQ(rx[d], rows[d - 1].received) << m.month << "-" << d;

            ReadTrafficLog(HOURLY_MODE, m.year, m.month, d, tx, rx, &max);
            char date[16];
            snprintf(date, sizeof date, "%04d-%02d-%02d", m.year, m.month, d);
            std::string out = RunQvlogWords({"hours", date, "--csv", "--dir", dir_}).out;
            for (int h = 0; h < 24; h++) {
                char line[128];
                snprintf(line, sizeof line, "\"%sT%02d\",\"%.0f\",\"%.0f\",\"%.0f\"\n", date, h, rx[h], tx[h],
                         rx[h] + tx[h]);
                EXPECT_NE(std::string::npos, out.find(line)) << line << out;
            }
            ReadTrafficLog(0, m.year, m.month, 1, tx, rx, &max);
        }
    }
}

// What `qvlog days` prints, rewritten as the export's rows, is the export of
// that whole month byte for byte: the days with traffic, the total row.
TEST_F(QvlogAgrees, WithTheCsvExport)
{
    std::wstring csv = fake::g_device.personal + L"\\export.csv";
    for (auto m : kMonths) {
        char month[8];
        snprintf(month, sizeof month, "%04d-%02d", m.year, m.month);
        QvlogResult r = RunQvlogWords({"days", month, "--dir", dir_});
        EXPECT_EQ(m.month == 3 ? QVLOG_DAMAGED : QVLOG_OK, r.status) << r.err;
        std::string want = "\"Date\",\"Xmit\",\"Rcv\",\"Total\"\n";
        std::istringstream lines(r.out);
        int rows = 0;
        for (std::string line; std::getline(lines, line);) {
            std::vector<std::string> w = Words(line);
            bool total = w.size() == 7 && w[0] == "Total";
            if (!(w.size() == 6 && w[1].size() == 3) && !total)
                continue;   // the title, the heads and the rule
            size_t n = w.size() - 3;   // date words, then received, transmitted, total
            if (!total && w[n] == "0" && w[n + 1] == "0")
                continue;   // the export leaves days without traffic out
            std::string date = w[0];
            for (size_t i = 1; i < n; i++)
                date += " " + w[i];
            want += "\"" + date + "\",\"" + w[n + 1] + "\",\"" + w[n] + "\",\"" + w[n + 2] + "\"\n";
            rows++;
        }
        EXPECT_GE(rows, 3) << r.out;
        ExportDate from = {m.year, m.month, 1}, to = {m.year, m.month, DaysInMonth(m.year, m.month)};
        ASSERT_TRUE(ExportTrafficCsv(csv.c_str(), from, to));
        std::ifstream f(std::filesystem::path(csv), std::ios::binary);
        EXPECT_EQ(want, std::string(std::istreambuf_iterator<char>(f), {})) << month;
    }
}

// Without --dir, the folder is the item's InstallDir value.
TEST_F(QvlogAgrees, FindsTheFolderInTheItemsRegistryValue)
{
    ASSERT_TRUE(WriteSettingString(L"InstallDir", g_item.dataFolder));
    QvlogResult r = RunQvlogWords({"days", "2026-02", "--csv"});
    EXPECT_EQ(QVLOG_OK, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("\"2026-02\",\"4294968295\",\"2001\",\"4294970296\"\n")) << r.out;
    r = RunQvlogWords({"days", "2026-02", "--json"});
    std::string escaped;
    for (char c : dir_)
        escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
    EXPECT_NE(std::string::npos, r.out.find("\"folder\": \"" + escaped + "\",")) << r.out;
    ASSERT_TRUE(WriteSettingString(L"InstallDir", (std::wstring(g_item.dataFolder) + L"\\missing").c_str()));
    r = RunQvlogWords({"days"});
    EXPECT_EQ(QVLOG_USAGE, r.status);
    EXPECT_NE(std::string::npos, r.err.find("missing: no such folder")) << r.err;
}

// The logs an end-to-end run wrote (QVLOG_LOG_DIR names their folder; the
// test is skipped without it): every row of the usage dialog's daily table,
// the day and its three texts from the dialog's reader, is a row of
// `qvlog days`, and the days without traffic read 0.
TEST_F(QvlogAgrees, OnTheLogsInQvlogLogDir)
{
    const char *folder = getenv("QVLOG_LOG_DIR");
    if (!folder || !*folder)
        GTEST_SKIP() << "QVLOG_LOG_DIR is not set";
    std::wstring wide(folder, folder + strlen(folder));
    CopyText(g_item.dataFolder, wide.c_str(), MAX_PATH);
    int months = 0;
    for (auto &entry : std::filesystem::directory_iterator(std::filesystem::path(wide))) {
        int year, month;
        if (!ParseTrafficLogFileName(entry.path().filename().string().c_str(), &year, &month))
            continue;
        months++;
        char period[8];
        snprintf(period, sizeof period, "%04d-%02d", year, month);
        QvlogResult r = RunQvlogWords({"days", period, "--dir", folder});
        EXPECT_EQ(QVLOG_OK, r.status) << r.err;
        double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
        int slots = ReadTrafficLog(0, year, month, 1, tx, rx, &max);
        int busy = 0;
        for (int d = 1; d <= slots; d++) {
            WCHAR texts[3][BYTE_COUNT_CHARS];
            FormatByteCount(rx[d], texts[0], BYTE_COUNT_CHARS);
            FormatByteCount(tx[d], texts[1], BYTE_COUNT_CHARS);
            FormatByteCount(tx[d] + rx[d], texts[2], BYTE_COUNT_CHARS);
            char line[160];
            snprintf(line, sizeof line, "%s %02d, %04d %ls %ls %ls", MonthAbbrevText(month), d, year, texts[0],
                     texts[1], texts[2]);
            std::vector<std::string> want = Words(line);
            bool found = false;
            std::istringstream lines(r.out);
            for (std::string l; std::getline(lines, l);)
                found = found || Words(l) == want;
            EXPECT_TRUE(found) << line << " in\n" << r.out;
            busy += tx[d] + rx[d] > 0;
        }
        printf("%s: %d days with traffic agree\n", period, busy);
    }
    EXPECT_GT(months, 0) << folder;
}

} // namespace
