// usagechart_test.cpp: the usage chart's scale ladder, bars, grid and paged table, by pixels.
#include "charts/charts.h"
#include "tests/support.h"
#include "trafficlog/reader.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);
const COLORREF kGrid = RGB(200, 208, 220), kAxis = RGB(70, 80, 96), kInk = 0xFFFFFFFF;

// Every row as users read it: the full scale, which is also the row's strict
// upper bound (the last row has none), and the labels from the top.
const struct { double fullScale; const wchar_t *labels; } kLadder[USAGE_SCALE_ROWS] = {
    {1024, L"1.0KB 0.8KB 0.6KB 0.4KB 0.2KB"},           {10240, L"10KB 8KB 6KB 4KB 2KB"},
    {51200, L"50KB 40KB 30KB 20KB 10KB"},               {102400, L"100KB 80KB 60KB 40KB 20KB"},
    {204800, L"200KB 160KB 120KB 80KB 40KB"},           {307200, L"300KB 240KB 180KB 120KB 60KB"},
    {409600, L"400KB 320KB 240KB 160KB 80KB"},          {512000, L"500KB 400KB 300KB 200KB 100KB"},
    {614400, L"600KB 480KB 360KB 240KB 120KB"},         {716800, L"700KB 560KB 420KB 280KB 140KB"},
    {819200, L"800KB 640KB 480KB 320KB 160KB"},         {921600, L"900KB 720KB 540KB 360KB 180KB"},
    {1024000, L"1.0MB 0.8MB 0.6MB 0.4MB 0.2MB"},        {2048000, L"2.0MB 1.6MB 1.2MB 0.8MB 0.4MB"},
    {3072000, L"3.0MB 2.4MB 1.8MB 1.2MB 0.6MB"},        {4096000, L"4.0MB 3.2MB 2.4MB 1.6MB 0.8MB"},
    {5120000, L"5MB 4MB 3MB 2MB 1MB"},                  {6144000, L"6.0MB 4.8MB 3.6MB 2.4MB 1.2MB"},
    {7168000, L"7.0MB 5.6MB 4.2MB 2.8MB 1.4MB"},        {8192000, L"8.0MB 6.4MB 4.8MB 3.2MB 1.6MB"},
    {9216000, L"9.0MB 7.2MB 5.4MB 3.6MB 1.8MB"},        {10240000, L"10MB 8MB 6MB 4MB 2MB"},
    {20480000, L"20MB 16MB 12MB 8MB 4MB"},              {30720000, L"30MB 24MB 18MB 12MB 6MB"},
    {40960000, L"40MB 32MB 24MB 16MB 8MB"},             {51200000, L"50MB 40MB 30MB 20MB 10MB"},
    {61440000, L"60MB 48MB 36MB 24MB 12MB"},            {71680000, L"70MB 56MB 42MB 28MB 14MB"},
    {81920000, L"80MB 64MB 48MB 32MB 16MB"},            {92160000, L"90MB 72MB 54MB 36MB 18MB"},
    {102400000, L"100MB 80MB 60MB 40MB 20MB"},          {1024000000, L"1.0GB 0.8GB 0.6GB 0.4GB 0.2GB"},
    {2048000000, L">2GB 1.6GB 1.2GB 0.8GB 0.4GB"},
};

TEST(UsageScale, EveryRowFromThePreviousBoundToBelowItsOwn)
{
    double from = 0;
    for (int i = 0; i < USAGE_SCALE_ROWS; i++) {
        double below = i + 1 < USAGE_SCALE_ROWS ? kLadder[i].fullScale : 1e15;
        for (double maximum : {from, below - 1}) {
            const UsageScale *row = ChooseUsageScale(maximum);
            std::wstring labels = row->labels[0];
            for (int j = 1; j < 5; j++)
                labels += std::wstring(L" ") + row->labels[j];
            EXPECT_EQ(kLadder[i].fullScale, row->fullScale) << maximum;
            EXPECT_EQ(kLadder[i].labels, labels) << maximum;
        }
        // A bar of exactly the full scale is 100 %, despite the reciprocal.
        EXPECT_EQ(100, UsageBarPercent(kLadder[i].fullScale, kLadder[i].fullScale)) << i;
        from = kLadder[i].fullScale;
    }
    EXPECT_EQ(99, UsageBarPercent(1023, 1024));
    EXPECT_EQ(0, UsageBarPercent(10, 1024));
    EXPECT_EQ(100, UsageBarPercent(4294967295.0 * 31, 2048000000));
}

TEST(UsageTexts, PageIndicatorAndSlotNames)
{
    WCHAR t[32];
    EXPECT_STREQ(L"0/0", FormatUsagePages(0, 0, t, 32));
    EXPECT_STREQ(L"1/1", FormatUsagePages(8, 0, t, 32));
    EXPECT_STREQ(L"1/2", FormatUsagePages(9, 0, t, 32));
    EXPECT_STREQ(L"2/2", FormatUsagePages(9, 1, t, 32));
    EXPECT_STREQ(L"3/4", FormatUsagePages(25, 2, t, 32));

    EXPECT_STREQ(L"12 am", FormatUsageSlot(USAGE_HOURLY, 0, true, t, 32));
    EXPECT_STREQ(L"01 am", FormatUsageSlot(USAGE_HOURLY, 1, true, t, 32));
    EXPECT_STREQ(L"11 am", FormatUsageSlot(USAGE_HOURLY, 11, true, t, 32));
    EXPECT_STREQ(L"12 pm", FormatUsageSlot(USAGE_HOURLY, 12, true, t, 32));
    EXPECT_STREQ(L"01 pm", FormatUsageSlot(USAGE_HOURLY, 13, true, t, 32));
    EXPECT_STREQ(L"00:00", FormatUsageSlot(USAGE_HOURLY, 0, false, t, 32));
    EXPECT_STREQ(L"17:00", FormatUsageSlot(USAGE_HOURLY, 17, false, t, 32));
    EXPECT_STREQ(L"7", FormatUsageSlot(USAGE_DAILY, 7, true, t, 32));
}

// The painter on a white surface, as the dialog's client area.
class UsagePaint : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        canvas_.Make(520, 520);
    }
    void TearDown() override
    {
        canvas_.Free();
        DeviceTest::TearDown();
    }
    void Screen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();
    }
    void Paint(int mode, int view, double maximum, int slots, int rows = 0, int page = 0)
    {
        PatBlt(canvas_.dc, 0, 0, canvas_.width, canvas_.height, WHITENESS);
        PaintUsageChart(canvas_.dc, mode, view, rows, page, tx_, rx_, maximum, slots);
    }
    // Pixels of colour c in the rectangle, bounds included; of kInk: dark ones, as the
    // backgrounds are light everywhere text goes.
    int Count(int left, int top, int right, int bottom, COLORREF c)
    {
        int n = 0;
        for (int y = top; y <= bottom; y++)
            for (int x = left; x <= right; x++) {
                COLORREF p = canvas_.At(x, y);
                n += c == kInk ? GetRValue(p) + GetGValue(p) + GetBValue(p) < 300 : p == c;
            }
        return n;
    }
    int Ink(int left, int top, int right, int bottom) { return Count(left, top, right, bottom, kInk); }
    bool RowListed(int i) { return Ink(10, 89 + 14 * i, 41, 100 + 14 * i) > 0; }
    // Colour c fills columns x to x + 2 from top to bottom, and nothing just above, below or beside.
    bool Bar(int x, int top, int bottom, COLORREF c)
    {
        return Count(x, top, x + 2, bottom, c) == 3 * (bottom - top + 1) && Count(x, top - 1, x + 2, top - 1, c) == 0 &&
               Count(x, bottom + 1, x + 2, bottom + 1, c) == 0 && Count(x - 1, top, x - 1, bottom, c) == 0 &&
               Count(x + 3, top, x + 3, bottom, c) == 0;
    }

    Canvas canvas_;
    double tx_[SERIES_SLOTS] = {}, rx_[SERIES_SLOTS] = {};
};

TEST_F(UsagePaint, BarsStandOnTheBaseLineAndTheShorterInFront)
{
    // The part of a bar seen in colour c; top 0: nothing of c in the slot's columns.
    struct Seen {
        int x, top, bottom;
        COLORREF c;
    };
    struct Slot {
        int slot;
        double tx, rx;
    };
    struct {
        const char *what;
        int w, h, mode, slots;
        std::vector<Slot> series;
        std::vector<Seen> bars;
    } cases[] = {
        {"the full scale of the 1,000-byte maximum's row: 100 %; the maximum: 97 %", 240, 320, USAGE_DAILY, 31,
         {{1, 1024, 0}, {2, 1000, 0}},
         {{35, 94, 193, kRed}, {40, 97, 193, kRed}}},
        {"equal bars once in red; the shorter of two in front", 240, 320, USAGE_DAILY, 31,
         {{3, 500, 500}, {4, 500, 1000}, {5, 1000, 500}},
         {{45, 146, 193, kRed}, {45, 0, 0, kBlue}, {50, 146, 193, kRed}, {50, 97, 145, kBlue},
          {55, 146, 193, kBlue}, {55, 97, 145, kRed}}},
        {"the last day of a month has its bar", 240, 320, USAGE_DAILY, 28, {{28, 1000, 0}, {29, 1000, 0}},
         {{170, 97, 193, kRed}, {175, 0, 0, kRed}}},
        {"hour 0 stands one slot in, hour 23 last", 240, 320, USAGE_HOURLY, 24,
         {{0, 1000, 0}, {23, 0, 1000}},
         {{37, 97, 193, kRed}, {198, 97, 193, kBlue}}},
        {"hi-res doubles positions and heights, not the bar's width", 480, 640, USAGE_DAILY, 31,
         {{1, 1024, 0}},
         {{70, 189, 388, kRed}}},
    };
    for (const auto &c : cases) {
        Screen(c.w, c.h);
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx_[i] = rx_[i] = 0;
        for (const Slot &s : c.series) {
            tx_[s.slot] = s.tx;
            rx_[s.slot] = s.rx;
        }
        Paint(c.mode, USAGE_VIEW_CHART, 1000, c.slots);
        for (const Seen &b : c.bars)
            EXPECT_TRUE(b.top ? Bar(b.x, b.top, b.bottom, b.c) : Count(b.x, 90, b.x + 2, 193, b.c) == 0)
                << c.what << ", x " << b.x;
    }

    // No traffic: a maximum of 0 and no bar at all.
    Screen(240, 320);
    for (int i = 0; i < SERIES_SLOTS; i++)
        tx_[i] = rx_[i] = 0;
    Paint(USAGE_HOURLY, USAGE_VIEW_CHART, 0, 24);
    EXPECT_EQ(0, Count(33, 90, 203, 193, kRed) + Count(33, 90, 203, 193, kBlue));
}

TEST_F(UsagePaint, GridAndLabelsMeetTheBars)
{
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 0, 31);
    // The top of a p % bar is row 194 - p: the grid's levels are there, the axis just below the bars.
    for (int p = 20; p <= 100; p += 20) {
        EXPECT_GT(Count(60, 194 - p, 190, 194 - p, kGrid), 20) << p;
        EXPECT_EQ(0, Count(60, 193 - p, 190, 193 - p, kGrid)) << p;
        EXPECT_EQ(0, Count(60, 195 - p, 190, 195 - p, kGrid)) << p;
    }
    EXPECT_GT(Count(33, 194, 200, 194, kAxis), 150);
    EXPECT_EQ(0, Count(33, 193, 200, 193, kAxis));
    // Five right-aligned labels, each centred on its level.
    for (int i = 0; i < 5; i++) {
        int top = 88 + 20 * i;
        EXPECT_GT(Ink(2, top, 29, top + 14), 10) << i;
        EXPECT_GT(Ink(24, top, 29, top + 14), 0) << i;
        EXPECT_EQ(0, Ink(2, top - 5, 29, top - 1)) << i;
    }
    // Stretched on hi-res, the 100 % line takes rows 188 and 189, where the bars end.
    Screen(480, 640);
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 0, 31);
    EXPECT_GT(Count(100, 189, 380, 189, kGrid), 40);
    EXPECT_EQ(0, Count(100, 187, 380, 187, kGrid));
}

TEST_F(UsagePaint, TablePagesHoldEightRowsAndHourZeroIsNeverListed)
{
    struct {
        const char *what;
        int w, h, mode, rows, page, listed;   // rows: the first slots of the mode with data
    } cases[] = {
        {"9 days, page 1 of 2", 240, 320, USAGE_DAILY, 9, 0, 8},
        {"9 days, page 2 of 2", 240, 320, USAGE_DAILY, 9, 1, 1},
        {"8 days, one page", 240, 320, USAGE_DAILY, 8, 0, 8},
        {"hours 0 to 8 make two pages, hours 1 to 8 are listed", 240, 320, USAGE_HOURLY, 9, 0, 8},
        {"hours 0 to 8, page 2 lists nothing", 240, 320, USAGE_HOURLY, 9, 1, 0},
        {"landscape puts the indicator beside the table", 320, 240, USAGE_DAILY, 0, 0, 0},
        {"31 days: the last is listed", 240, 320, USAGE_DAILY, 31, 3, 7},
    };
    for (const auto &c : cases) {
        Screen(c.w, c.h);
        int first = c.mode == USAGE_HOURLY ? 0 : 1;
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx_[i] = i >= first && i < first + c.rows ? 100.0 * (i + 1) : 0;
        Paint(c.mode, USAGE_VIEW_TABLE, 100.0 * c.rows, c.mode == USAGE_HOURLY ? 24 : 31, c.rows, c.page);
        for (int i = 0; i < 8; i++)
            EXPECT_EQ(i < c.listed, RowListed(i)) << c.what << ", row " << i;
        EXPECT_EQ(c.w < c.h, Ink(10, 205, 105, 217) > 0) << c.what;   // the indicator, below the table
        EXPECT_EQ(c.w > c.h, Ink(208, 87, 238, 106) > 0) << c.what;   // or beside it
    }

    // The columns: slot, transmitted, received, total ("1.50KB", "0", "1.50KB").
    for (int i = 0; i < SERIES_SLOTS; i++)
        tx_[i] = rx_[i] = 0;
    tx_[28] = 1536;
    Paint(USAGE_DAILY, USAGE_VIEW_TABLE, 1536, 28, 1, 0);
    int xmit = Ink(46, 89, 89, 100), rcv = Ink(94, 89, 137, 100), total = Ink(142, 89, 198, 100);
    EXPECT_EQ(total, xmit);
    EXPECT_GT(xmit, 3 * rcv);
    EXPECT_GT(rcv, 0);
}

TEST_F(UsagePaint, HeaderIconsAndNoDeviceContext)
{
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 0, 31);
    for (int x : {31, 73, 157})
        EXPECT_GT(Ink(x, 43, x + 23, 66), 10) << x;
    EXPECT_EQ(0, Ink(100, 43, 150, 66));
    PaintUsageChart(nullptr, USAGE_DAILY, USAGE_VIEW_CHART, 0, 0, tx_, rx_, 0, 31);
}

} // namespace
