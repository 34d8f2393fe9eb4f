// reader_test.cpp: the log reader's series and maximum, the calendar, and byte-count texts.
#include "tests/support.h"
#include "tests/logfile.h"
#include "trafficlog/reader.h"

namespace {

TEST(Calendar, DaysInMonthAndTheMonthsNames)
{
    std::wstring names;
    for (int m = 1; m <= 12; m++)
        names += MonthAbbrev(m) + std::to_wstring(DaysInMonth(2006, m)) + L" ";
    EXPECT_EQ(L"Jan31 Feb28 Mar31 Apr30 May31 Jun30 Jul31 Aug31 Sep30 Oct31 Nov30 Dec31 ", names);
    const int leap[][2] = {{2000, 29}, {1900, 28}, {2004, 29}, {2100, 28}, {2400, 29}};
    for (auto c : leap)
        EXPECT_EQ(c[1], DaysInMonth(c[0], 2)) << c[0];
}

TEST(ByteCount, UnitEdgesAndASmallBuffer)
{
    const struct { double value; const wchar_t *text; } cases[] = {
        {0, L"0"}, {500, L"0.49KB"}, {1023, L"1.00KB"}, {1048575, L"1024.00KB"}, {1048576, L"1.00MB"},
        {1073741823, L"1024.00MB"}, {1073741824, L"1.00GB"}, {1610612736, L"1.50GB"}, {8760.0 * 4294967296.0, L"35040.00GB"},
    };
    WCHAR text[BYTE_COUNT_CHARS];
    for (auto c : cases)
        EXPECT_STREQ(c.text, FormatByteCount(c.value, text, BYTE_COUNT_CHARS)) << c.value;
    text[7] = L'#';
    FormatByteCount(1048575, text, 7);
    EXPECT_TRUE(text[7] == L'#' && wcslen(text) < 7u);
}

using ReadLog = DeviceTest;

TEST_F(ReadLog, SeriesAndMaximumFromRecords)
{
    Bytes reserved = Record(1, 0, 0xFFFFFFFFu, 0x80000000u), many;
    reserved[2] = 0xAB;
    reserved[3] = 0xCD;
    // A cut tail: day 3, hour 0, reserved, and the received field's lowest
    // byte; the rest is left from the record before, in the same read or not.
    const Bytes tail = {3, 0, 0, 0, 0x22};
    for (int i = 0; i < 64; i++)
        many = many + Record(2, 0, i == 63 ? 0x01000000 : 0, 5);
    const Bytes outside = Record(32, 0, 50, 50) + Record(-1, 0, 60, 60) + Record(1, -3, 70, 70) + Record(1, 40, 80, 80);
    struct Slot { int at; double tx, rx; };
    const struct { const char *what; Bytes bytes; int mode, day; std::vector<Slot> slots; double max; } cases[] = {
        {"daily sums the hours into their day; days 1 and 31 of 31",
         Record(1, 0, 10, 1000) + Record(1, 23, 10, 1000) + Record(31, 5, 7, 8), 0, 0, {{1, 2000, 20}, {31, 8, 7}}, 2000},
        {"hourly takes the day's hours, the later record wins",
         Record(3, 7, 100, 200) + Record(4, 7, 900000, 900000) + Record(3, 7, 5, 6), HOURLY_MODE, 3,
         {{7, 6, 5}}, 200},   // the maximum saw the first record
        {"received counts for the maximum", Record(9, 1, 4000, 3000), 0, 0, {{9, 3000, 4000}}, 4000},
        {"fields unsigned, reserved ignored", reserved, 0, 0, {{1, 2147483648.0, 4294967295.0}}, 4294967295.0},
        {"cut tail", Record(2, 0, 0x01000000, 5) + tail, 0, 0, {{2, 5, 0x01000000}, {3, 5, 0x01000022}}, 0x01000022},
        {"a cut tail after a full read", many + tail, 0, 0, {{2, 64 * 5, 0x01000000}, {3, 5, 0x01000022}}, 0x01000022},
        {"days outside the series", outside, 0, 0, {{1, 150, 150}}, 150},
        {"hours outside the series", outside, HOURLY_MODE, 1, {}, 0},
    };
    for (auto &c : cases) {
        double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max = 7;
        std::fill(tx, tx + SERIES_SLOTS, 99);
        std::fill(rx, rx + SERIES_SLOTS, 99);
        WriteBytes(LogPath(2026, 3), c.bytes);
        EXPECT_EQ(c.mode == HOURLY_MODE ? 24 : 31, ReadTrafficLog(c.mode, 2026, 3, c.day, tx, rx, &max)) << c.what;
        for (int i = 0; i < SERIES_SLOTS; i++) {
            Slot want = {i, 0, 0};
            for (const Slot &slot : c.slots)
                want = slot.at == i ? slot : want;
            EXPECT_TRUE(want.tx == tx[i] && want.rx == rx[i]) << c.what << ", slot " << i << ": " << tx[i] << " " << rx[i];
        }
        EXPECT_EQ(c.max, max) << c.what;
    }
}

TEST_F(ReadLog, NoFileAnEmptyFileAndALockedFileAreEmptyViews)
{
    WriteBytes(LogPath(2026, 3), Bytes());
    WriteBytes(LogPath(2026, 4), Record(1, 1, 500, 500));
    HANDLE exclusive = CreateFileW(LogPath(2026, 4).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, exclusive);
    double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
    const int cases[][2] = {{2, 28}, {3, 31}, {4, 30}};   // none, empty, locked
    for (auto c : cases) {
        std::fill(tx, tx + SERIES_SLOTS, 99);
        std::fill(rx, rx + SERIES_SLOTS, 99);
        max = 7;
        EXPECT_EQ(c[1], ReadTrafficLog(0, 2026, c[0], 1, tx, rx, &max)) << c[0];
        EXPECT_EQ(0.0, max) << c[0];
        EXPECT_EQ(2 * SERIES_SLOTS, std::count(tx, tx + SERIES_SLOTS, 0.0) + std::count(rx, rx + SERIES_SLOTS, 0.0)) << c[0];
    }
    EXPECT_EQ(24, ReadTrafficLog(HOURLY_MODE, 2026, 2, 1, tx, rx, &max));
    CloseHandle(exclusive);
    // While the writer holds it open with sharing, it reads as usual.
    HANDLE shared = CreateFileW(LogPath(2026, 4).c_str(), GENERIC_READ | GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(30, ReadTrafficLog(0, 2026, 4, 1, tx, rx, &max));
    EXPECT_EQ(500.0, max);
    CloseHandle(shared);
}

} // namespace
