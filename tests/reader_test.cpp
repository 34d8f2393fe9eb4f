// reader_test.cpp: the log reader's series and maximum, the calendar, and byte-count texts.
#include "tests/support.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"

#include <string.h>

#include <vector>

namespace {

typedef std::vector<unsigned char> Bytes;

void AddRecord(Bytes &bytes, int day, int hour, DWORD received, DWORD transmitted)
{
    unsigned char r[12] = {(unsigned char)day, (unsigned char)hour, 0xAB, 0xCD};
    memcpy(r + 4, &received, 4);
    memcpy(r + 8, &transmitted, 4);
    bytes.insert(bytes.end(), r, r + 12);
}

struct Series {
    double tx[SERIES_SLOTS], rx[SERIES_SLOTS], max;
    Series()
    {
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx[i] = rx[i] = 0;
        max = 0;
    }
    void Add(const Bytes &b, int mode, int day = 0)
    {
        AddTrafficLogBytes(b.data(), b.size(), mode, day, tx, rx, &max);
    }
};

std::wstring Text(double value)
{
    WCHAR text[BYTE_COUNT_CHARS];
    return FormatByteCount(value, text, BYTE_COUNT_CHARS);
}

TEST(Calendar, DaysInMonthFollowsTheGregorianRule)
{
    const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int m = 1; m <= 12; m++)
        EXPECT_EQ(days[m - 1], DaysInMonth(2006, m)) << m;
    EXPECT_EQ(29, DaysInMonth(2000, 2));
    EXPECT_EQ(28, DaysInMonth(1900, 2));
    EXPECT_EQ(29, DaysInMonth(2004, 2));
    EXPECT_EQ(28, DaysInMonth(2006, 2));
    EXPECT_EQ(28, DaysInMonth(2100, 2));
    EXPECT_EQ(29, DaysInMonth(2400, 2));
    EXPECT_EQ(31, DaysInMonth(2004, 1));   // only February changes
}

TEST(Calendar, MonthAbbreviations)
{
    const wchar_t *names[] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                              L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    for (int m = 1; m <= 12; m++)
        EXPECT_STREQ(names[m - 1], MonthAbbrev(m));
}

TEST(ByteCount, UnitEdges)
{
    EXPECT_EQ(L"0", Text(0));
    EXPECT_EQ(L"0.49KB", Text(500));          // no bytes unit
    EXPECT_EQ(L"1.00KB", Text(1023));         // rounded by the format
    EXPECT_EQ(L"1.00KB", Text(1024));
    EXPECT_EQ(L"1024.00KB", Text(1048575));
    EXPECT_EQ(L"1.00MB", Text(1048576));
    EXPECT_EQ(L"1024.00MB", Text(1073741823));
    EXPECT_EQ(L"1.00GB", Text(1073741824));
    EXPECT_EQ(L"1.50GB", Text(1610612736));
    // A year of full hours, far beyond a month's file, still fits.
    EXPECT_EQ(L"35040.00GB", Text(8760.0 * 4294967296.0));
}

TEST(ByteCount, ASmallBufferIsCutNotOverrun)
{
    WCHAR text[8];
    text[7] = L'#';
    FormatByteCount(1048575, text, 7);
    EXPECT_EQ(L'#', text[7]);
    EXPECT_LT(wcslen(text), 7u);
}

TEST(LogBytes, DailyModeSumsEveryHourIntoItsDay)
{
    Bytes b;
    for (int h = 0; h < 24; h++)
        AddRecord(b, 5, h, 10, 1000);
    AddRecord(b, 6, 0, 7, 7);
    Series s;
    s.Add(b, 0);
    EXPECT_EQ(24000.0, s.tx[5]);
    EXPECT_EQ(240.0, s.rx[5]);
    EXPECT_EQ(7.0, s.tx[6]);
    EXPECT_EQ(0.0, s.tx[0]);
    EXPECT_EQ(24000.0, s.max);
}

TEST(LogBytes, HourlyModeAssignsTheRequestedDaysHoursAndTheLaterRecordWins)
{
    Bytes b;
    AddRecord(b, 3, 7, 100, 200);
    AddRecord(b, 4, 7, 900000, 900000);   // another day: ignored
    AddRecord(b, 3, 7, 5, 6);             // the same hour again
    AddRecord(b, 3, 0, 1, 2);
    Series s;
    s.Add(b, HOURLY_MODE, 3);
    EXPECT_EQ(6.0, s.tx[7]);
    EXPECT_EQ(5.0, s.rx[7]);
    EXPECT_EQ(2.0, s.tx[0]);
    EXPECT_EQ(1.0, s.rx[0]);
    // The maximum saw the first record before the second replaced it.
    EXPECT_EQ(200.0, s.max);
}

TEST(LogBytes, MaximumComesFromOneSeriesNotTheSum)
{
    Bytes b;
    AddRecord(b, 9, 1, 2000, 3000);
    Series s;
    s.Add(b, 0);
    EXPECT_EQ(3000.0, s.max);
    Series r;
    Bytes c;
    AddRecord(c, 9, 1, 4000, 3000);
    r.Add(c, 0);
    EXPECT_EQ(4000.0, r.max);   // received counts as well
}

TEST(LogBytes, FieldsAreUnsignedAndReservedBytesIgnored)
{
    Bytes b;
    AddRecord(b, 1, 0, 0xFFFFFFFFu, 0x80000000u);
    Series s;
    s.Add(b, 0);
    EXPECT_EQ(4294967295.0, s.rx[1]);
    EXPECT_EQ(2147483648.0, s.tx[1]);
}

TEST(LogBytes, ACutTailCountsOverThePreviousRecordsBytes)
{
    Bytes b;
    AddRecord(b, 2, 0, 0x01000000, 0x00000005);
    // Five bytes of a second record: day 3, hour 0, reserved, and the
    // received field's lowest byte; the rest is left from the first record.
    const unsigned char tail[5] = {3, 0, 0, 0, 0x22};
    b.insert(b.end(), tail, tail + 5);
    Series s;
    s.Add(b, 0);
    EXPECT_EQ((double)0x01000022, s.rx[3]);
    EXPECT_EQ(5.0, s.tx[3]);
}

TEST(LogBytes, SlotsOutsideTheSeriesAreSkipped)
{
    Bytes b;
    AddRecord(b, 32, 0, 50, 50);
    AddRecord(b, -1, 0, 60, 60);
    AddRecord(b, 1, -3, 70, 70);
    AddRecord(b, 1, 40, 80, 80);
    Series s;
    s.Add(b, 0);
    s.Add(b, HOURLY_MODE, 1);
    EXPECT_EQ(150.0, s.tx[1]);   // the two day-1 records, daily
    EXPECT_EQ(150.0, s.max);
}

class ReadLog : public DeviceTest {
protected:
    void Write(int year, int month, const Bytes &bytes)
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(year, month, path);
        HANDLE f = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(INVALID_HANDLE_VALUE, f);
        DWORD written = 0;
        if (!bytes.empty())
            WriteFile(f, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
        CloseHandle(f);
    }
    Series s;
};

TEST_F(ReadLog, AMonthWithoutAFileIsAnEmptyView)
{
    for (int i = 0; i < SERIES_SLOTS; i++)
        s.tx[i] = s.rx[i] = 99;
    s.max = 12345;
    EXPECT_EQ(30, ReadTrafficLog(0, 2026, 11, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(0.0, s.max);
    for (int i = 0; i < SERIES_SLOTS; i++) {
        EXPECT_EQ(0.0, s.tx[i]);
        EXPECT_EQ(0.0, s.rx[i]);
    }
    EXPECT_EQ(24, ReadTrafficLog(HOURLY_MODE, 2026, 11, 1, s.tx, s.rx, &s.max));
}

TEST_F(ReadLog, SlotCountFollowsTheModeAndTheMonth)
{
    Bytes b;
    AddRecord(b, 29, 23, 1, 2);
    Write(2004, 2, b);
    Write(2006, 2, b);
    EXPECT_EQ(29, ReadTrafficLog(0, 2004, 2, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(2.0, s.tx[29]);
    EXPECT_EQ(28, ReadTrafficLog(0, 2006, 2, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(24, ReadTrafficLog(HOURLY_MODE, 2004, 2, 29, s.tx, s.rx, &s.max));
    EXPECT_EQ(2.0, s.tx[23]);
    EXPECT_EQ(1.0, s.rx[23]);
}

TEST_F(ReadLog, AFullMonthIsReadAndEachReadStartsFromZero)
{
    Bytes b;
    for (int d = 1; d <= 31; d++)
        for (int h = 0; h < 24; h++)
            AddRecord(b, d, h, d * 1000 + h, d);
    Write(2026, 1, b);
    for (int pass = 0; pass < 2; pass++) {
        EXPECT_EQ(31, ReadTrafficLog(0, 2026, 1, 1, s.tx, s.rx, &s.max));
        EXPECT_EQ(24.0 * 31, s.tx[31]);
        EXPECT_EQ(31 * 24000.0 + 276, s.rx[31]);
        EXPECT_EQ(31 * 24000.0 + 276, s.max);
    }
    EXPECT_EQ(24, ReadTrafficLog(HOURLY_MODE, 2026, 1, 15, s.tx, s.rx, &s.max));
    EXPECT_EQ(15023.0, s.rx[23]);
    EXPECT_EQ(15023.0, s.max);
    EXPECT_EQ(0.0, s.rx[31]);   // the daily sums are gone
}

TEST_F(ReadLog, AnEmptyFileAndAFileLockedByAnotherOpenAreEmptyViews)
{
    Write(2026, 3, Bytes());
    s.max = 7;
    EXPECT_EQ(31, ReadTrafficLog(0, 2026, 3, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(0.0, s.max);

    Bytes b;
    AddRecord(b, 1, 1, 500, 500);
    Write(2026, 4, b);
    WCHAR path[MAX_PATH];
    TrafficLogPath(2026, 4, path);
    HANDLE exclusive = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, exclusive);
    s.max = 7;
    EXPECT_EQ(30, ReadTrafficLog(0, 2026, 4, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(0.0, s.max);
    CloseHandle(exclusive);

    // While the writer holds it open with sharing, it reads as usual.
    HANDLE shared = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(30, ReadTrafficLog(0, 2026, 4, 1, s.tx, s.rx, &s.max));
    EXPECT_EQ(500.0, s.max);
    CloseHandle(shared);
}

} // namespace
