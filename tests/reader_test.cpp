// reader_test.cpp: the log reader's series and maximum, the calendar, and byte-count texts.
#include "tests/support.h"
#include "tests/logfile.h"
#include "trafficlog/reader.h"

namespace {

struct Series {
    double tx[SERIES_SLOTS] = {}, rx[SERIES_SLOTS] = {}, max = 0;
    int Read(int mode, int year, int month, int day = 1)
    {
        return ReadTrafficLog(mode, year, month, day, tx, rx, &max);
    }
};

TEST(Calendar, DaysInMonthAndTheMonthsNames)
{
    const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    std::wstring names;
    for (int m = 1; m <= 12; m++) {
        EXPECT_EQ(days[m - 1], DaysInMonth(2006, m)) << m;
        names += MonthAbbrev(m);
    }
    EXPECT_EQ(L"JanFebMarAprMayJunJulAugSepOctNovDec", names);
    const struct { int year, month, days; } leap[] = {
        {2000, 2, 29}, {1900, 2, 28}, {2004, 2, 29}, {2100, 2, 28}, {2400, 2, 29}, {2004, 1, 31}};
    for (auto c : leap)
        EXPECT_EQ(c.days, DaysInMonth(c.year, c.month)) << c.year << "-" << c.month;
}

TEST(ByteCount, UnitEdgesAndASmallBuffer)
{
    const struct { double value; const wchar_t *text; } cases[] = {
        {0, L"0"},
        {500, L"0.49KB"},   // no bytes unit
        {1023, L"1.00KB"},  // rounded by the format
        {1024, L"1.00KB"},
        {1048575, L"1024.00KB"},
        {1048576, L"1.00MB"},
        {1073741823, L"1024.00MB"},
        {1073741824, L"1.00GB"},
        {1610612736, L"1.50GB"},
        {8760.0 * 4294967296.0, L"35040.00GB"},   // a year of full hours still fits
    };
    for (auto c : cases) {
        WCHAR text[BYTE_COUNT_CHARS];
        EXPECT_STREQ(c.text, FormatByteCount(c.value, text, BYTE_COUNT_CHARS)) << c.value;
    }
    WCHAR text[8];
    text[7] = L'#';
    FormatByteCount(1048575, text, 7);
    EXPECT_EQ(L'#', text[7]);
    EXPECT_LT(wcslen(text), 7u);
}

class ReadLog : public DeviceTest {};

TEST_F(ReadLog, SeriesAndMaximumFromRecords)
{
    Bytes day5;
    for (int h = 0; h < 24; h++)
        day5 = day5 + Record(5, h, 10, 1000);
    Bytes reserved = Record(1, 0, 0xFFFFFFFFu, 0x80000000u);
    reserved[2] = 0xAB;
    reserved[3] = 0xCD;
    // A cut tail: day 3, hour 0, reserved, and the received field's lowest
    // byte; the rest is left from the record before.
    const Bytes tail = {3, 0, 0, 0, 0x22};
    Bytes many;
    for (int i = 0; i < 64; i++)
        many = many + Record(2, 0, i == 63 ? 0x01000000 : 0, 5);
    const Bytes outside = Record(32, 0, 50, 50) + Record(-1, 0, 60, 60) + Record(1, -3, 70, 70) +
                          Record(1, 40, 80, 80);
    struct Slot { int at; double tx, rx; };
    const struct {
        const char *what;
        Bytes bytes;
        int mode, day;
        std::vector<Slot> slots;   // every other slot stays 0
        double max;
    } cases[] = {
        {"daily sums every hour into its day", day5, 0, 0, {{5, 24000, 240}}, 24000},
        {"hourly takes the day's hours, the later record wins",
         Record(3, 7, 100, 200) + Record(4, 7, 900000, 900000) + Record(3, 7, 5, 6), HOURLY_MODE, 3,
         {{7, 6, 5}}, 200},   // the maximum saw the first record
        {"maximum from one series, not the sum", Record(9, 1, 2000, 3000), 0, 0, {{9, 3000, 2000}}, 3000},
        {"received counts for the maximum", Record(9, 1, 4000, 3000), 0, 0, {{9, 3000, 4000}}, 4000},
        {"fields unsigned, reserved ignored", reserved, 0, 0, {{1, 2147483648.0, 4294967295.0}}, 4294967295.0},
        {"cut tail", Record(2, 0, 0x01000000, 5) + tail, 0, 0, {{2, 5, 0x01000000}, {3, 5, 0x01000022}},
         0x01000022},
        {"a cut tail after a full read", many + tail, 0, 0, {{2, 64 * 5, 0x01000000}, {3, 5, 0x01000022}},
         0x01000022},
        {"days outside the series", outside, 0, 0, {{1, 150, 150}}, 150},
        {"hours outside the series", outside, HOURLY_MODE, 1, {}, 0},
    };
    for (auto &c : cases) {
        Series s;
        WriteBytes(LogPath(2026, 3), c.bytes);
        EXPECT_EQ(c.mode == HOURLY_MODE ? 24 : 31, s.Read(c.mode, 2026, 3, c.day)) << c.what;
        for (int i = 0; i < SERIES_SLOTS; i++) {
            Slot want = {i, 0, 0};
            for (const Slot &slot : c.slots)
                if (slot.at == i)
                    want = slot;
            EXPECT_EQ(want.tx, s.tx[i]) << c.what << ", slot " << i;
            EXPECT_EQ(want.rx, s.rx[i]) << c.what << ", slot " << i;
        }
        EXPECT_EQ(c.max, s.max) << c.what;
    }
}


TEST_F(ReadLog, NoFileAnEmptyFileAndALockedFileAreEmptyViews)
{
    WriteBytes(LogPath(2026, 3), Bytes());
    WriteBytes(LogPath(2026, 4), Record(1, 1, 500, 500));
    HANDLE exclusive = CreateFileW(LogPath(2026, 4).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, exclusive);
    const struct { int month, slots; } cases[] = {{2, 28}, {3, 31}, {4, 30}};   // none, empty, locked
    Series s;
    for (auto c : cases) {
        for (int i = 0; i < SERIES_SLOTS; i++)
            s.tx[i] = s.rx[i] = 99;
        s.max = 7;
        EXPECT_EQ(c.slots, s.Read(0, 2026, c.month)) << c.month;
        EXPECT_EQ(0.0, s.max) << c.month;
        for (int i = 0; i < SERIES_SLOTS; i++)
            EXPECT_EQ(0.0, s.tx[i] + s.rx[i]) << c.month << ", slot " << i;
    }
    EXPECT_EQ(24, s.Read(HOURLY_MODE, 2026, 2));
    CloseHandle(exclusive);

    // While the writer holds it open with sharing, it reads as usual.
    HANDLE shared = CreateFileW(LogPath(2026, 4).c_str(), GENERIC_READ | GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(30, s.Read(0, 2026, 4));
    EXPECT_EQ(500.0, s.max);
    CloseHandle(shared);
}

TEST_F(ReadLog, AFullMonthIsReadAndEachReadStartsFromZero)
{
    Series s;
    Bytes month;
    for (int d = 1; d <= 31; d++)
        for (int h = 0; h < 24; h++)
            month = month + Record(d, h, d * 1000 + h, d);
    WriteBytes(LogPath(2026, 1), month);
    for (int pass = 0; pass < 2; pass++) {
        EXPECT_EQ(31, s.Read(0, 2026, 1));
        EXPECT_EQ(24.0 * 31, s.tx[31]);
        EXPECT_EQ(31 * 24000.0 + 276, s.rx[31]);
        EXPECT_EQ(31 * 24000.0 + 276, s.max);
    }
    EXPECT_EQ(24, s.Read(HOURLY_MODE, 2026, 1, 15));
    EXPECT_EQ(15023.0, s.rx[23]);
    EXPECT_EQ(15023.0, s.max);
    EXPECT_EQ(0.0, s.rx[31]);   // the daily sums are gone
}

} // namespace
