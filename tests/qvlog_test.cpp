// qvlog_test.cpp: qvlog on Windows: the item's folder from its registry value, its days against the usage dialog's reader.
#include "tests/support.h"
#include "tests/logfile.h"

#include "platform/text.h"
#include "tools/qvlog/qvlog.h"
#include "trafficlog/reader.h"

namespace {

// A month's days as qvlog reads them from the item's folder, each checked
// against the usage dialog's daily series; the status.
int DaysAgreeWithTheDialog(int year, int month, std::vector<QvlogRow> *rows, QvlogRow *total)
{
    std::wstring folder = g_item.dataFolder;
    FILE *err = tmpfile();
    int status = QvlogMonthDays(std::string(folder.begin(), folder.end()), year, month, rows, total, err);
    fclose(err);
    double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
    int slots = ReadTrafficLog(0, year, month, 1, tx, rx, &max);
    EXPECT_EQ((size_t)slots, rows->size()) << month;
    for (int d = 1; d <= slots && d <= (int)rows->size(); d++)
        EXPECT_TRUE(tx[d] == (*rows)[d - 1].transmitted && rx[d] == (*rows)[d - 1].received) << year << "-" << month << "-" << d;
    return status;
}

using QvlogAgrees = DeviceTest;

// Without --dir, the folder is the item's InstallDir value.
TEST_F(QvlogAgrees, FindsTheFolderInTheItemsRegistryValue)
{
    WriteBytes(LogPath(2026, 2), February2026());
    ASSERT_TRUE(WriteSettingString(L"InstallDir", g_item.dataFolder));
    QvlogResult r = RunQvlogWords({"days", "2026-02", "--csv"});
    EXPECT_EQ(QVLOG_OK, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("\"2026-02\",\"4294968295\",\"2001\",\"4294970296\"\n")) << r.out;
    ASSERT_TRUE(WriteSettingString(L"InstallDir", (std::wstring(g_item.dataFolder) + L"\\missing").c_str()));
    r = RunQvlogWords({"days"});
    EXPECT_TRUE(r.status == QVLOG_USAGE && r.err.find("missing: no such folder") != std::string::npos) << r.err;
}

// The logs an end-to-end run wrote (QVLOG_LOG_DIR names their folder; the
// test is skipped without it): every day of every month agrees with the
// usage dialog's daily series, and the logs are sound.
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
        std::vector<QvlogRow> rows;
        QvlogRow total;
        EXPECT_EQ(QVLOG_OK, DaysAgreeWithTheDialog(year, month, &rows, &total)) << year << "-" << month;
        printf("%04d-%02d: %d days with traffic agree\n", year, month,
               (int)std::count_if(rows.begin(), rows.end(), [](const QvlogRow &r) { return r.received + r.transmitted > 0; }));
        months++;
    }
    EXPECT_GT(months, 0) << folder;
}

} // namespace
