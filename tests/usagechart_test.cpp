// usagechart_test.cpp: both charts' scale ladders, and the usage chart's bars, grid and paged table, by pixels.
#include "charts/charts.h"
#include "charts/livegraph.h"
#include "tests/support.h"
#include "resources/resource.h"
#include "trafficlog/reader.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);
const COLORREF kGrid = RGB(200, 208, 220), kAxis = RGB(70, 80, 96), kInk = 0xFFFFFFFF;

// The usage chart's ladder as users read it: each row's full scale, which is
// also its strict upper bound (the last row has none), and its labels from the top.
const struct { double fullScale; const wchar_t *labels; } kLadder[USAGE_SCALE_ROWS] = {
    {1024, L"1.0KB 0.8KB 0.6KB 0.4KB 0.2KB"},    {10240, L"10KB 8KB 6KB 4KB 2KB"},          {51200, L"50KB 40KB 30KB 20KB 10KB"},
    {102400, L"100KB 80KB 60KB 40KB 20KB"},      {204800, L"200KB 160KB 120KB 80KB 40KB"},  {307200, L"300KB 240KB 180KB 120KB 60KB"},
    {409600, L"400KB 320KB 240KB 160KB 80KB"},   {512000, L"500KB 400KB 300KB 200KB 100KB"}, {614400, L"600KB 480KB 360KB 240KB 120KB"},
    {716800, L"700KB 560KB 420KB 280KB 140KB"},  {819200, L"800KB 640KB 480KB 320KB 160KB"}, {921600, L"900KB 720KB 540KB 360KB 180KB"},
    {1024000, L"1.0MB 0.8MB 0.6MB 0.4MB 0.2MB"}, {2048000, L"2.0MB 1.6MB 1.2MB 0.8MB 0.4MB"}, {3072000, L"3.0MB 2.4MB 1.8MB 1.2MB 0.6MB"},
    {4096000, L"4.0MB 3.2MB 2.4MB 1.6MB 0.8MB"}, {5120000, L"5MB 4MB 3MB 2MB 1MB"},           {6144000, L"6.0MB 4.8MB 3.6MB 2.4MB 1.2MB"},
    {7168000, L"7.0MB 5.6MB 4.2MB 2.8MB 1.4MB"}, {8192000, L"8.0MB 6.4MB 4.8MB 3.2MB 1.6MB"}, {9216000, L"9.0MB 7.2MB 5.4MB 3.6MB 1.8MB"},
    {10240000, L"10MB 8MB 6MB 4MB 2MB"},         {20480000, L"20MB 16MB 12MB 8MB 4MB"},       {30720000, L"30MB 24MB 18MB 12MB 6MB"},
    {40960000, L"40MB 32MB 24MB 16MB 8MB"},      {51200000, L"50MB 40MB 30MB 20MB 10MB"},     {61440000, L"60MB 48MB 36MB 24MB 12MB"},
    {71680000, L"70MB 56MB 42MB 28MB 14MB"},     {81920000, L"80MB 64MB 48MB 32MB 16MB"},     {92160000, L"90MB 72MB 54MB 36MB 18MB"},
    {102400000, L"100MB 80MB 60MB 40MB 20MB"},   {1024000000, L"1.0GB 0.8GB 0.6GB 0.4GB 0.2GB"}, {2048000000, L">2GB 1.6GB 1.2GB 0.8GB 0.4GB"},
};

std::wstring Joined(const LPCWSTR *labels)
{
    std::wstring text = labels[0];
    for (int j = 1; j < 5; j++)
        text += std::wstring(L" ") + labels[j];
    return text;
}

TEST(Scales, EveryRowOfBothLaddersFromThePreviousBoundToBelowItsOwn)
{
    double from = 0;
    for (int i = 0; i < USAGE_SCALE_ROWS; i++) {
        double below = i + 1 < USAGE_SCALE_ROWS ? kLadder[i].fullScale : 1e15;
        for (double maximum : {from, below - 1}) {
            EXPECT_EQ(kLadder[i].fullScale, ChooseUsageScale(maximum)->fullScale) << maximum;
            EXPECT_EQ(kLadder[i].labels, Joined(ChooseUsageScale(maximum)->labels)) << maximum;
        }
        // A bar of exactly the full scale is 100 %, despite the reciprocal.
        EXPECT_EQ(100, UsageBarPercent(kLadder[i].fullScale, kLadder[i].fullScale)) << i;
        from = kLadder[i].fullScale;
    }
    EXPECT_TRUE(UsageBarPercent(1023, 1024) == 99 && UsageBarPercent(10, 1024) == 0);
    EXPECT_EQ(100, UsageBarPercent(4294967295.0 * 31, 2048000000));

    // The live graph's ladder is the same from 1 KB to 10 MB but for 50 KB;
    // past 10 MB its full scale jumps a hundredfold while the lower labels stay.
    DWORD bound = 0;
    for (int i = 0; i <= 22; i++) {
        if (i == 2)
            continue;
        bool top = i == 22;
        DWORD fullScale = top ? 1024000000 : (DWORD)kLadder[i].fullScale;
        for (DWORD largest : {bound, top ? 0xFFFFFFFF : fullScale - 1}) {
            const LiveGraphScale &row = ChooseLiveGraphScale(largest);
            EXPECT_EQ(fullScale, row.fullScale) << largest;
            EXPECT_EQ(top ? L">10MB 8MB 6MB 4MB 2MB" : kLadder[i].labels, Joined(row.labels)) << largest;
        }
        bound = fullScale;
    }
}

TEST(UsageTexts, PageIndicatorAndSlotNames)
{
    WCHAR t[32];
    EXPECT_TRUE(!lstrcmpW(L"0/0", FormatUsagePages(0, 0, t, 32)) && !lstrcmpW(L"1/1", FormatUsagePages(8, 0, t, 32)));
    EXPECT_TRUE(!lstrcmpW(L"2/2", FormatUsagePages(9, 1, t, 32)) && !lstrcmpW(L"3/4", FormatUsagePages(25, 2, t, 32)));
    const struct { int mode, slot; bool amPm; const wchar_t *text; } slots[] = {
        {USAGE_HOURLY, 0, true, L"12 am"}, {USAGE_HOURLY, 12, true, L"12 pm"}, {USAGE_HOURLY, 13, true, L"01 pm"},
        {USAGE_HOURLY, 0, false, L"00:00"}, {USAGE_DAILY, 7, true, L"7"}};
    for (auto s : slots)
        EXPECT_STREQ(s.text, FormatUsageSlot(s.mode, s.slot, s.amPm, t, 32)) << s.slot;
}

// The painter on a white surface, as the dialog's client area.
class UsagePaint : public DeviceTest {
protected:
    void Paint(int w, int h, int mode, int view, double maximum, int slots, int rows = 0, int page = 0)
    {
        fake::SetScreen(w, h);
        IsLandscape();
        canvas_.Make(520, 520);
        PaintUsageChart(canvas_.dc, mode, view, rows, page, tx_, rx_, maximum, slots);
    }
    // Pixels of colour c in the rectangle, bounds included; of kInk: dark ones, as the
    // backgrounds are light everywhere text goes.
    int Count(int left, int top, int right, int bottom, COLORREF c)
    {
        int n = 0;
        for (COLORREF p : Pixels(canvas_.dc, left, top, right - left + 1, bottom - top + 1))
            n += c == kInk ? GetRValue(p) + GetGValue(p) + GetBValue(p) < 300 : p == c;
        return n;
    }
    int Ink(int left, int top, int right, int bottom) { return Count(left, top, right, bottom, kInk); }
    // Colour c fills columns x to x + 2 from top to bottom, and nothing just above, below or beside.
    bool Bar(int x, int top, int bottom, COLORREF c)
    {
        int n = Count(x, top, x + 2, bottom, c);
        return n == 3 * (bottom - top + 1) && Count(x - 1, top - 1, x + 3, bottom + 1, c) == n;
    }
    void Series(std::vector<std::vector<double>> slots)   // {slot, transmitted, received}
    {
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx_[i] = rx_[i] = 0;
        for (auto &s : slots)
            tx_[(int)s[0]] = s[1], rx_[(int)s[0]] = s[2];
    }

    Canvas canvas_;
    double tx_[SERIES_SLOTS] = {}, rx_[SERIES_SLOTS] = {};
};

// The bars' daily positions, heights, grid and labels are checked on the
// screen end to end, on hi-res too; here the cases that a month of traffic never shows.
TEST_F(UsagePaint, BarsOfEqualOrCrossedSeriesTheMonthsLastDayAndTheHours)
{
    // The part of a bar seen in colour c; top 0: nothing of c in the slot's columns.
    struct Seen { int x, top, bottom; COLORREF c; };
    const struct {
        const char *what;
        int mode, slots;
        std::vector<std::vector<double>> series;
        std::vector<Seen> bars;
    } cases[] = {
        {"equal bars once in red; the shorter of two in front; 1,000 bytes reach 97 %", USAGE_DAILY, 28,
         {{3, 500, 500}, {4, 500, 1000}, {5, 1000, 500}, {28, 1000, 0}, {29, 1000, 0}},
         {{45, 146, 193, kRed}, {45, 0, 0, kBlue}, {50, 146, 193, kRed}, {50, 97, 145, kBlue}, {55, 146, 193, kBlue},
          {55, 97, 145, kRed}, {170, 97, 193, kRed}, {175, 0, 0, kRed}}},
        {"hour 0 stands one slot in, hour 23 last", USAGE_HOURLY, 24, {{0, 1000, 0}, {23, 0, 1000}},
         {{37, 97, 193, kRed}, {198, 97, 193, kBlue}}},
    };
    for (const auto &c : cases) {
        Series(c.series);
        Paint(240, 320, c.mode, USAGE_VIEW_CHART, 1000, c.slots);
        for (const Seen &b : c.bars)
            EXPECT_TRUE(b.top ? Bar(b.x, b.top, b.bottom, b.c) : Count(b.x, 90, b.x + 2, 193, b.c) == 0) << c.what << ", x " << b.x;
    }
    // The header's three icons at their natural size, on either screen: the
    // device stretches an icon loaded without its size to 32 pixels.
    const int ids[2][3] = {{IDI_USAGE_TABLE, IDI_USAGE_CHART, IDI_USAGE_EXPORT},
                           {IDI_USAGE_TABLE_HIRES, IDI_USAGE_CHART_HIRES, IDI_USAGE_EXPORT_HIRES}};
    for (int s = 1; s <= 2; s++) {
        Paint(240 * s, 320 * s, USAGE_DAILY, USAGE_VIEW_CHART, 0, 31);
        for (int i = 0; i < 3; i++) {
            int x = (i == 0 ? 31 : i == 1 ? 73 : 157) * s;
            EXPECT_EQ(IconOver(RGB(255, 255, 255), ids[s - 1][i], 24 * s), Pixels(canvas_.dc, x, 43 * s, 24 * s, 24 * s)) << x;
        }
    }
    // No device context, no paint.
    PaintUsageChart(nullptr, USAGE_DAILY, USAGE_VIEW_CHART, 0, 0, tx_, rx_, 0, 31);
}

TEST_F(UsagePaint, TablePagesHoldEightRowsAndHourZeroIsNeverListed)
{
    const struct { const char *what; int w, mode, rows, page, listed; } cases[] = {   // rows: the first slots with data
        {"9 days, page 1 of 2", 240, USAGE_DAILY, 9, 0, 8},
        {"9 days, page 2 of 2", 240, USAGE_DAILY, 9, 1, 1},
        {"hours 0 to 8 make two pages, hours 1 to 8 are listed", 240, USAGE_HOURLY, 9, 0, 8},
        {"hours 0 to 8, page 2 lists nothing", 240, USAGE_HOURLY, 9, 1, 0},
        {"landscape puts the indicator beside the table", 320, USAGE_DAILY, 0, 0, 0},
        {"31 days: the last is listed", 240, USAGE_DAILY, 31, 3, 7},
    };
    for (const auto &c : cases) {
        int first = c.mode == USAGE_HOURLY ? 0 : 1;
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx_[i] = i >= first && i < first + c.rows ? 100.0 * (i + 1) : 0;
        Paint(c.w, c.w == 240 ? 320 : 240, c.mode, USAGE_VIEW_TABLE, 100.0 * c.rows, c.mode == USAGE_HOURLY ? 24 : 31, c.rows,
              c.page);
        for (int i = 0; i < 8; i++)
            EXPECT_EQ(i < c.listed, Ink(10, 89 + 14 * i, 41, 100 + 14 * i) > 0) << c.what << ", row " << i;
        EXPECT_EQ(c.w == 240, Ink(10, 205, 105, 217) > 0) << c.what;   // the indicator, below the table
        EXPECT_EQ(c.w != 240, Ink(208, 87, 238, 106) > 0) << c.what;   // or beside it
    }
    // The columns: slot, transmitted, received, total ("1.50KB", "0", "1.50KB"), on the 28th of 28.
    Series({{28, 1536, 0}});
    Paint(240, 320, USAGE_DAILY, USAGE_VIEW_TABLE, 1536, 28, 1, 0);
    int xmit = Ink(46, 89, 89, 100), rcv = Ink(94, 89, 137, 100), total = Ink(142, 89, 198, 100);
    EXPECT_TRUE(total == xmit && xmit > 3 * rcv && rcv > 0) << xmit << " " << rcv << " " << total;
}

} // namespace
