// usagechart_test.cpp: the usage chart's scale ladder, bars, grid and paged table, by pixels.
#include "charts/charts.h"
#include "tests/support.h"
#include "trafficlog/reader.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);
const COLORREF kGrid = RGB(200, 208, 220), kAxis = RGB(70, 80, 96), kInk = 0xFFFFFFFF;

TEST(UsageScale, EachRowRunsUpToItsStrictBound)
{
    double previous = 0;
    for (int i = 0; i < USAGE_SCALE_ROWS - 1; i++) {
        const UsageScale *row = ChooseUsageScale(previous);
        double bound = row->below;
        EXPECT_GT(bound, previous);
        EXPECT_EQ(row, ChooseUsageScale(bound - 1)) << bound;
        EXPECT_NE(row, ChooseUsageScale(bound)) << bound;
        EXPECT_EQ(bound, row->fullScale);
        // A bar of exactly the full scale is 100 %, despite the reciprocal.
        EXPECT_EQ(100, UsageBarPercent(row->fullScale, row->fullScale)) << bound;
        previous = bound;
    }
    EXPECT_EQ(100, UsageBarPercent(2048000000, 2048000000));
}

TEST(UsageScale, ChosenRowsKeepTheirOddUnits)
{
    struct {
        double maximum, fullScale;
        const wchar_t *labels;
    } cases[] = {
        {0, 1024, L"1.0KB 0.8KB 0.6KB 0.4KB 0.2KB"},
        {1024, 10240, L"10KB 8KB 6KB 4KB 2KB"},            // strict: 1,024 is already the next row
        {1048576, 2048000, L"2.0MB 1.6MB 1.2MB 0.8MB 0.4MB"},   // the axis' megabyte is 1,000 KB
        {4500000, 5120000, L"5MB 4MB 3MB 2MB 1MB"},          // the one megabyte row without decimals
        {5120000, 6144000, L"6.0MB 4.8MB 3.6MB 2.4MB 1.2MB"},
        {1023999999, 1024000000, L"1.0GB 0.8GB 0.6GB 0.4GB 0.2GB"},
        {1024000000, 2048000000, L">2GB 1.6GB 1.2GB 0.8GB 0.4GB"},
        {1e15, 2048000000, L">2GB 1.6GB 1.2GB 0.8GB 0.4GB"},
    };
    for (const auto &c : cases) {
        const UsageScale *row = ChooseUsageScale(c.maximum);
        std::wstring labels = row->labels[0];
        for (int j = 1; j < 5; j++)
            labels += std::wstring(L" ") + row->labels[j];
        EXPECT_EQ(c.fullScale, row->fullScale) << c.maximum;
        EXPECT_EQ(c.labels, labels) << c.maximum;
    }
}

TEST(UsageScale, BarPercentTruncatesAndClamps)
{
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
