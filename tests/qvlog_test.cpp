// qvlog_test.cpp: qvlog on Windows: its days against the usage dialog's reader, on the logs an end-to-end run wrote.
#include "tests/support.h"

#include "platform/text.h"
#include "tools/qvlog/qvlog.h"
#include "trafficlog/reader.h"

#include <filesystem>

namespace {

using QvlogAgrees = DeviceTest;

// The logs an end-to-end run wrote (QVLOG_LOG_DIR names their folder; the
// test is skipped without it): every day of every month, as qvlog reads it
// from the item's folder, agrees with the usage dialog's daily series, and
// the logs are sound.
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
        FILE *err = tmpfile();
        EXPECT_EQ(QVLOG_OK, QvlogMonthDays(folder, year, month, &rows, &total, err)) << year << "-" << month;
        fclose(err);
        double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
        int slots = ReadTrafficLog(0, year, month, 1, tx, rx, &max);
        EXPECT_EQ((size_t)slots, rows.size()) << month;
        for (int d = 1; d <= slots && d <= (int)rows.size(); d++)
            EXPECT_TRUE(tx[d] == rows[d - 1].transmitted && rx[d] == rows[d - 1].received) << year << "-" << month << "-" << d;
        months++;
    }
    EXPECT_GT(months, 0) << folder;
    // The end-to-end run reads this line to know the comparison was made, not skipped.
    if (!HasFailure())
        printf("qvlog: %d month(s) whose days with traffic agree\n", months);
}

} // namespace
