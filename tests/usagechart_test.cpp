// usagechart_test.cpp: the usage chart's scale ladder, bars, grid and paged table, by pixels.
#include "charts/charts.h"
#include "tests/support.h"
#include "trafficlog/reader.h"

#include <string>

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);
const COLORREF kGrid = RGB(200, 208, 220), kAxis = RGB(70, 80, 96);

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
        previous = bound;
    }
}

TEST(UsageScale, ChosenRowsAndTheirLabels)
{
    const UsageScale *r = ChooseUsageScale(0);
    EXPECT_EQ(1024.0, r->fullScale);
    EXPECT_STREQ(L"1.0KB", r->labels[0]);
    EXPECT_STREQ(L"0.2KB", r->labels[4]);

    r = ChooseUsageScale(1024);   // strict: 1,024 is already the next row
    EXPECT_EQ(10240.0, r->fullScale);
    EXPECT_STREQ(L"10KB", r->labels[0]);

    r = ChooseUsageScale(1048576);   // the axis' megabyte is 1,000 KB
    EXPECT_EQ(2048000.0, r->fullScale);
    EXPECT_STREQ(L"2.0MB", r->labels[0]);
    EXPECT_STREQ(L"0.4MB", r->labels[4]);

    r = ChooseUsageScale(4500000);   // the one megabyte row without decimals
    EXPECT_STREQ(L"5MB", r->labels[0]);
    EXPECT_STREQ(L"1MB", r->labels[4]);
    EXPECT_STREQ(L"6.0MB", ChooseUsageScale(5120000)->labels[0]);

    EXPECT_STREQ(L"1.0GB", ChooseUsageScale(1023999999)->labels[0]);
    r = ChooseUsageScale(1024000000);
    EXPECT_EQ(2048000000.0, r->fullScale);
    EXPECT_STREQ(L">2GB", r->labels[0]);
    EXPECT_EQ(r, ChooseUsageScale(1e15));
}

TEST(UsageScale, BarPercentTruncatesAndClamps)
{
    // Every full scale gives exactly 100, despite the reciprocal.
    double previous = 0;
    for (int i = 0; i < USAGE_SCALE_ROWS; i++) {
        const UsageScale *row = ChooseUsageScale(previous);
        EXPECT_EQ(100, UsageBarPercent(row->fullScale, row->fullScale)) << row->fullScale;
        previous = row->below;
    }
    EXPECT_EQ(97, UsageBarPercent(1000, 1024));   // the maximum itself is not 100 %
    EXPECT_EQ(99, UsageBarPercent(1023, 1024));
    EXPECT_EQ(0, UsageBarPercent(10, 1024));
    EXPECT_EQ(0, UsageBarPercent(0, 1024));
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
    EXPECT_STREQ(L"11 pm", FormatUsageSlot(USAGE_HOURLY, 23, true, t, 32));
    EXPECT_STREQ(L"00:00", FormatUsageSlot(USAGE_HOURLY, 0, false, t, 32));
    EXPECT_STREQ(L"17:00", FormatUsageSlot(USAGE_HOURLY, 17, false, t, 32));
    EXPECT_STREQ(L"7", FormatUsageSlot(USAGE_DAILY, 7, true, t, 32));
    EXPECT_STREQ(L"31", FormatUsageSlot(USAGE_DAILY, 31, false, t, 32));
}

// The painter on a white 32-bit surface, as the dialog's client area.
class UsagePaint : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        BITMAPINFO bi = {};
        bi.bmiHeader.biSize = sizeof bi.bmiHeader;
        bi.bmiHeader.biWidth = kSize;
        bi.bmiHeader.biHeight = -kSize;
        bi.bmiHeader.biPlanes = 1;
        bi.bmiHeader.biBitCount = 32;
        void *bits;
        bitmap_ = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
        dc_ = CreateCompatibleDC(nullptr);
        old_ = SelectObject(dc_, bitmap_);
        font_ = CreateFontW(-11, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        oldFont_ = SelectObject(dc_, font_);
        for (int i = 0; i < SERIES_SLOTS; i++)
            tx_[i] = rx_[i] = 0;
    }
    void TearDown() override
    {
        SelectObject(dc_, oldFont_);
        SelectObject(dc_, old_);
        DeleteObject(font_);
        DeleteDC(dc_);
        DeleteObject(bitmap_);
        DeviceTest::TearDown();
    }
    void Screen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();
    }
    void Paint(int mode, int view, double maximum, int slots, int rows = 0, int page = 0)
    {
        PatBlt(dc_, 0, 0, kSize, kSize, WHITENESS);
        PaintUsageChart(dc_, mode, view, rows, page, tx_, rx_, maximum, slots);
    }
    COLORREF Px(int x, int y) { return GetPixel(dc_, x, y); }
    // The rows from `top` down to `bottom` (inclusive) of column x, all of one colour.
    bool Column(int x, int top, int bottom, COLORREF c)
    {
        for (int y = top; y <= bottom; y++)
            if (Px(x, y) != c)
                return false;
        return true;
    }
    int Count(int left, int top, int right, int bottom, COLORREF c)
    {
        int n = 0;
        for (int y = top; y <= bottom; y++)
            for (int x = left; x <= right; x++)
                n += Px(x, y) == c;
        return n;
    }
    // Text pixels: dark ones; the backgrounds are light everywhere text goes.
    int Ink(int left, int top, int right, int bottom)
    {
        int n = 0;
        for (int y = top; y <= bottom; y++)
            for (int x = left; x <= right; x++) {
                COLORREF c = Px(x, y);
                n += GetRValue(c) + GetGValue(c) + GetBValue(c) < 300;
            }
        return n;
    }
    bool RowListed(int i, int s = 1)
    {
        return Ink(10 * s, (89 + 14 * i) * s, 41 * s, (101 + 14 * i) * s - 1) > 0;
    }

    static const int kSize = 520;
    HBITMAP bitmap_ = nullptr;
    HDC dc_ = nullptr;
    HGDIOBJ old_ = nullptr, oldFont_ = nullptr;
    HFONT font_ = nullptr;
    double tx_[SERIES_SLOTS], rx_[SERIES_SLOTS];
};

TEST_F(UsagePaint, FullScaleAnd97PercentBarsStandOnTheBaseLine)
{
    tx_[1] = 1024;   // exactly the full scale of the 1,000-byte maximum's row
    tx_[2] = 1000;   // the maximum itself: 97 %
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 1000, 31);
    for (int x = 35; x <= 37; x++) {
        EXPECT_TRUE(Column(x, 94, 193, kRed)) << x;
        EXPECT_NE(kRed, Px(x, 93));
        EXPECT_NE(kRed, Px(x, 194));
    }
    EXPECT_NE(kRed, Px(34, 150));
    EXPECT_NE(kRed, Px(38, 150));
    EXPECT_TRUE(Column(40, 97, 193, kRed));
    EXPECT_NE(kRed, Px(40, 96));
}

TEST_F(UsagePaint, SharedSlotsShowTheShorterBarInFrontAndEqualOnesOnceInRed)
{
    tx_[3] = rx_[3] = 500;                 // 48 % each
    tx_[4] = 500, rx_[4] = 1000;           // 48 % red in front of 97 % blue
    tx_[5] = 1000, rx_[5] = 500;           // 48 % blue in front of 97 % red
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 1000, 31);

    EXPECT_TRUE(Column(45, 146, 193, kRed));
    EXPECT_EQ(0, Count(45, 90, 47, 193, kBlue));
    EXPECT_NE(kRed, Px(45, 145));

    EXPECT_TRUE(Column(51, 146, 193, kRed));
    EXPECT_TRUE(Column(51, 97, 145, kBlue));
    EXPECT_TRUE(Column(56, 146, 193, kBlue));
    EXPECT_TRUE(Column(56, 97, 145, kRed));
}

TEST_F(UsagePaint, HourlyBarsStartOneSlotInAndNoTrafficDrawsNoBars)
{
    tx_[0] = 1000;
    rx_[23] = 1000;
    Paint(USAGE_HOURLY, USAGE_VIEW_CHART, 1000, 24);
    EXPECT_TRUE(Column(37, 97, 193, kRed));
    EXPECT_NE(kRed, Px(36, 150));
    EXPECT_TRUE(Column(200, 97, 193, kBlue));
    EXPECT_NE(kBlue, Px(201, 150));

    tx_[0] = rx_[23] = 0;
    Paint(USAGE_HOURLY, USAGE_VIEW_CHART, 0, 24);
    EXPECT_EQ(0, Count(33, 90, 203, 193, kRed));
    EXPECT_EQ(0, Count(33, 90, 203, 193, kBlue));
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
}

TEST_F(UsagePaint, HiResDoublesPositionsButNotTheBarWidth)
{
    Screen(480, 640);
    tx_[1] = 1024;
    Paint(USAGE_DAILY, USAGE_VIEW_CHART, 1000, 31);
    for (int x = 70; x <= 72; x++)
        EXPECT_TRUE(Column(x, 189, 388, kRed)) << x;
    EXPECT_NE(kRed, Px(70, 188));
    EXPECT_NE(kRed, Px(69, 300));
    EXPECT_NE(kRed, Px(73, 300));
    // The stretched grid's 100 % line takes rows 188 and 189.
    EXPECT_GT(Count(100, 189, 380, 189, kGrid), 40);
    EXPECT_EQ(0, Count(100, 187, 380, 187, kGrid));
}

TEST_F(UsagePaint, TablePagesHoldEightRows)
{
    for (int d = 1; d <= 9; d++)
        tx_[d] = 100 * d;
    Paint(USAGE_DAILY, USAGE_VIEW_TABLE, 900, 31, 9, 0);
    for (int i = 0; i < 8; i++)
        EXPECT_TRUE(RowListed(i)) << i;
    EXPECT_GT(Ink(10, 205, 105, 217), 0);   // the indicator, in portrait below the table
    Paint(USAGE_DAILY, USAGE_VIEW_TABLE, 900, 31, 9, 1);
    EXPECT_TRUE(RowListed(0));
    EXPECT_FALSE(RowListed(1));

    tx_[9] = 0;
    Paint(USAGE_DAILY, USAGE_VIEW_TABLE, 800, 31, 8, 0);
    EXPECT_TRUE(RowListed(7));
}

TEST_F(UsagePaint, HourZeroCountsTowardsPagesButIsNeverListed)
{
    for (int h = 0; h <= 8; h++)
        rx_[h] = 50;
    Paint(USAGE_HOURLY, USAGE_VIEW_TABLE, 50, 24, 9, 0);
    for (int i = 0; i < 8; i++)
        EXPECT_TRUE(RowListed(i)) << i;
    Paint(USAGE_HOURLY, USAGE_VIEW_TABLE, 50, 24, 9, 1);
    EXPECT_FALSE(RowListed(0));
}

TEST_F(UsagePaint, LandscapeMovesTheIndicatorBesideTheTable)
{
    Screen(320, 240);
    Paint(USAGE_DAILY, USAGE_VIEW_TABLE, 0, 31, 0, 0);
    EXPECT_GT(Ink(208, 87, 238, 106), 0);
    EXPECT_EQ(0, Ink(10, 205, 105, 217));
    EXPECT_FALSE(RowListed(0));
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
