// reader_test.cpp: the log reader's series and maximum, byte-count texts and leap years.
#include "tests/support.h"
#include "tests/logfile.h"
#include "trafficlog/reader.h"

namespace {

TEST(ByteCount, UnitEdgesASmallBufferAndFebruaryInLeapYears)
{
    const struct { double value; const wchar_t *text; } cases[] = {
        {0, L"0"},           {1023, L"1.00KB"},          {1048575, L"1024.00KB"},
        {1048576, L"1.00MB"}, {1073741823, L"1024.00MB"}, {1073741824, L"1.00GB"}};
    WCHAR text[BYTE_COUNT_CHARS];
    for (auto c : cases)
        EXPECT_STREQ(c.text, FormatByteCount(c.value, text, BYTE_COUNT_CHARS)) << c.value;
    text[7] = L'#';
    FormatByteCount(1048575, text, 7);
    EXPECT_TRUE(text[7] == L'#' && wcslen(text) < 7u);
    EXPECT_TRUE(DaysInMonth(2000, 2) == 29 && DaysInMonth(2004, 2) == 29 && DaysInMonth(2100, 2) == 28);
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

} // namespace
