// livegraph_test.cpp: the live graph's ladder, its columns by pixels, and its dialog.
#include "tests/support.h"

#include "charts/charts.h"
#include "charts/livegraph.h"
#include "resources/resource.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kWhite = RGB(255, 255, 255);

TEST(LiveGraphScale, BoundsAreStrict)
{
    struct {
        DWORD largest, fullScale;
        const wchar_t *top;
    } cases[] = {
        {0, 1024, L"1.0KB"},          {1023, 1024, L"1.0KB"},       {1024, 10240, L"10KB"},
        {10239, 10240, L"10KB"},      {10240, 102400, L"100KB"},    {921599, 921600, L"900KB"},
        {921600, 1024000, L"1.0MB"},  {1023999, 1024000, L"1.0MB"}, {1024000, 2048000, L"2.0MB"},
        {5119999, 5120000, L"5MB"},   {5120000, 6144000, L"6.0MB"}, {10239999, 10240000, L"10MB"},
        {10240000, 1024000000, L">10MB"}, {0xFFFFFFFF, 1024000000, L">10MB"},
    };
    for (auto c : cases) {
        const LiveGraphScale &scale = ChooseLiveGraphScale(c.largest);
        EXPECT_EQ(c.fullScale, scale.fullScale) << c.largest;
        EXPECT_STREQ(c.top, scale.labels[0]) << c.largest;
    }
}

TEST(LiveGraphScale, IrregularLabelsAreKept)
{
    const LiveGraphScale &five = ChooseLiveGraphScale(5000000);
    const wchar_t *fiveLabels[] = {L"5MB", L"4MB", L"3MB", L"2MB", L"1MB"};
    const LiveGraphScale &top = ChooseLiveGraphScale(12000000);
    const wchar_t *topLabels[] = {L">10MB", L"8MB", L"6MB", L"4MB", L"2MB"};
    const LiveGraphScale &small = ChooseLiveGraphScale(310000);
    const wchar_t *smallLabels[] = {L"400KB", L"320KB", L"240KB", L"160KB", L"80KB"};
    for (int j = 0; j < LIVEGRAPH_LABELS; j++) {
        EXPECT_STREQ(fiveLabels[j], five.labels[j]);
        EXPECT_STREQ(topLabels[j], top.labels[j]);
        EXPECT_STREQ(smallLabels[j], small.labels[j]);
    }
}

TEST(LiveGraphScale, ColumnHeightWrapsAndCaps)
{
    EXPECT_EQ(50u, LiveGraphColumnHeight(512, 1024));
    EXPECT_EQ(99u, LiveGraphColumnHeight(1023, 1024));
    EXPECT_EQ(0u, LiveGraphColumnHeight(10, 10240));
    EXPECT_EQ(1u, LiveGraphColumnHeight(12000000, 1024000000));
    EXPECT_EQ(4u, LiveGraphColumnHeight(42949672, 1024000000));
    // v x 100 is 32-bit: 42,949,673 x 100 wraps to 4, and 500,000,000 to 2,755,359,744.
    EXPECT_EQ(0u, LiveGraphColumnHeight(42949673, 1024000000));
    EXPECT_EQ(2u, LiveGraphColumnHeight(500000000, 1024000000));
    // The cap, where a value larger than the full scale is drawn (not by the ladder's choice).
    EXPECT_EQ(100u, LiveGraphColumnHeight(5000, 1024));
}

// A 32-bit surface of the graph's size, the background bitmap in a second
// context, and the dialog's two pens.
class LiveGraphDrawing : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        red_ = CreatePen(PS_SOLID, 3, kRed);
        blue_ = CreatePen(PS_SOLID, 3, kBlue);
    }
    void TearDown() override
    {
        FreeSurface();
        DeleteObject(red_);
        DeleteObject(blue_);
        DeviceTest::TearDown();
    }
    void FreeSurface()
    {
        if (surface_) {
            SelectObject(surface_, oldSurface_);
            DeleteDC(surface_);
            DeleteObject(bitmap_);
            SelectObject(image_, oldImage_);
            DeleteDC(image_);
            DeleteObject(background_);
        }
        surface_ = nullptr;
    }
    void Draw(int s = 1)
    {
        FreeSurface();
        scale_ = s;
        BITMAPINFO bi = {};
        bi.bmiHeader.biSize = sizeof bi.bmiHeader;
        bi.bmiHeader.biWidth = LIVEGRAPH_WIDTH * s;
        bi.bmiHeader.biHeight = -LIVEGRAPH_HEIGHT * s;
        bi.bmiHeader.biPlanes = 1;
        bi.bmiHeader.biBitCount = 32;
        void *bits;
        bitmap_ = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
        surface_ = CreateCompatibleDC(nullptr);
        oldSurface_ = SelectObject(surface_, bitmap_);
        background_ = LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDB_LIVEGRAPH));
        ASSERT_NE(nullptr, background_);
        image_ = CreateCompatibleDC(nullptr);
        oldImage_ = SelectObject(image_, background_);
        RECT client = {0, 0, 300 * s, 200 * s};
        DrawLiveGraph(surface_, image_, client, red_, blue_, s);
    }
    // A pixel in logical units (scaled like the painter's coordinates).
    COLORREF At(int x, int y) { return GetPixel(surface_, x * scale_, y * scale_); }
    // The topmost row of colour `c` in column x (device pixels), or -1.
    int Top(int x, COLORREF c)
    {
        for (int y = 0; y < LIVEGRAPH_HEIGHT * scale_; y++)
            if (GetPixel(surface_, x, y) == c)
                return y;
        return -1;
    }
    // Pixels of the series' colours anywhere over the plot, legend excluded.
    int ColumnPixels()
    {
        int n = 0;
        for (int y = 0; y < LIVEGRAPH_HEIGHT * scale_; y++)
            for (int x = 0; x < 172 * scale_; x++) {
                COLORREF c = GetPixel(surface_, x, y);
                n += c == kRed || c == kBlue;
            }
        return n;
    }
    // Dark (text) pixels in the label box of level j.
    int LabelInk(int j)
    {
        int n = 0;
        for (int y = (7 + 20 * j) * scale_; y < (22 + 20 * j) * scale_; y++)
            for (int x = LIVEGRAPH_LABEL_LEFT * scale_; x < LIVEGRAPH_LABEL_RIGHT * scale_; x++)
                n += GetRValue(GetPixel(surface_, x, y)) < 100;
        return n;
    }
    void Samples(int count, int start = -1, int index = -1)
    {
        g_item.sampleCount = count;
        g_item.ringStart = start;
        g_item.ringIndex = index;
    }

    HPEN red_ = nullptr, blue_ = nullptr;
    HDC surface_ = nullptr, image_ = nullptr;
    HBITMAP bitmap_ = nullptr, background_ = nullptr;
    HGDIOBJ oldSurface_ = nullptr, oldImage_ = nullptr;
    int scale_ = 1;
};

TEST_F(LiveGraphDrawing, NoSamplesShowsTheBackgroundOnly)
{
    for (int count : {-1, 0}) {
        Samples(count);
        g_item.outDeltas[0] = 5000;   // not a sample yet
        Draw();
        EXPECT_EQ(0, ColumnPixels()) << count;
        for (int j = 0; j < LIVEGRAPH_LABELS; j++)
            EXPECT_EQ(0, LabelInk(j)) << count << " " << j;
        EXPECT_EQ(kWhite, At(1, 1));
        EXPECT_EQ(kWhite, At(209, 119));
        // The image's frame and axis are where the painter's baseline is.
        EXPECT_NE(kWhite, At(LIVEGRAPH_IMAGE_X, 60));
        EXPECT_NE(kWhite, At(100, LIVEGRAPH_BASELINE));
    }
}

TEST_F(LiveGraphDrawing, OneSampleStandsAtTheRightEdge)
{
    Samples(1, 0, 0);
    g_item.inDeltas[0] = 512;
    g_item.outDeltas[0] = 0;
    Draw();
    // 512 of 1,024: a blue line 50 units high at x = 168, nothing red.
    EXPECT_EQ(kBlue, At(168, 113));
    EXPECT_EQ(kBlue, At(168, 65));
    EXPECT_EQ(kBlue, At(167, 90));
    EXPECT_NE(kBlue, At(168, 61));
    EXPECT_NE(kBlue, At(161, 100));
    EXPECT_EQ(-1, Top(168, kRed));
    int top = Top(168, kBlue);
    EXPECT_GE(top, 62);
    EXPECT_LE(top, 64);
    for (int j = 0; j < LIVEGRAPH_LABELS; j++)
        EXPECT_GT(LabelInk(j), 5) << j;
}

TEST_F(LiveGraphDrawing, GrowingRingStepsLeftFromTheNewest)
{
    Samples(3, 0, 2);
    DWORD in[3] = {1000, 500, 250};
    for (int i = 0; i < 3; i++) {
        g_item.inDeltas[i] = in[i];
        g_item.outDeltas[i] = 0;
    }
    Draw();
    // Oldest at 154, newest at 168; heights 97, 48, 24 of 1,024.
    EXPECT_NEAR(114 - 97, Top(154, kBlue), 2);
    EXPECT_NEAR(114 - 48, Top(161, kBlue), 2);
    EXPECT_NEAR(114 - 24, Top(168, kBlue), 2);
    EXPECT_EQ(-1, Top(147, kBlue));
}

TEST_F(LiveGraphDrawing, FullRingIsWalkedFromItsOldestEntry)
{
    // Entry i holds (i + 1) x 40 transmitted bytes; the oldest is entry 5.
    for (int i = 0; i < RING_SIZE; i++) {
        g_item.outDeltas[i] = (i + 1) * 40;
        g_item.inDeltas[i] = 0;
    }
    Samples(20, 5, 4);
    Draw();
    for (int column = 0; column < RING_SIZE; column++) {
        int entry = (5 + column) % RING_SIZE;
        int x = LIVEGRAPH_FIRST_COLUMN + LIVEGRAPH_COLUMN_STEP * column;
        int p = (entry + 1) * 40 * 100 / 1024;
        EXPECT_NEAR(114 - p, Top(x, kRed), 2) << "column " << column;
    }
    EXPECT_EQ(-1, Top(28, kRed));
    EXPECT_EQ(-1, Top(175, kRed));

    // Started at 0 the ring is walked once, 0 to 19.
    Samples(20, 0, 19);
    Draw();
    EXPECT_NEAR(114 - 3, Top(LIVEGRAPH_FIRST_COLUMN, kRed), 2);
    EXPECT_NEAR(114 - 78, Top(LIVEGRAPH_NEWEST_COLUMN, kRed), 2);
}

TEST_F(LiveGraphDrawing, SmallerLineShowsInFront)
{
    Samples(2, 0, 1);
    g_item.outDeltas[0] = 800;   // red 78, blue 39 in front of it
    g_item.inDeltas[0] = 400;
    g_item.outDeltas[1] = 600;   // a tie: blue in front over the whole length
    g_item.inDeltas[1] = 600;
    Draw();
    EXPECT_EQ(kBlue, At(161, 100));
    EXPECT_EQ(kRed, At(161, 60));
    EXPECT_EQ(kBlue, At(168, 100));
    EXPECT_EQ(kBlue, At(168, 60));
}

TEST_F(LiveGraphDrawing, ValuesAboveTheWrapDrawShortLines)
{
    // 500,000,000 bytes in one tick: the ">10MB" scale, and v x 100 wraps to a
    // height of 2 instead of 48.
    Samples(2, 0, 1);
    g_item.outDeltas[0] = 12000000;
    g_item.inDeltas[0] = 0;
    g_item.outDeltas[1] = 500000000;
    g_item.inDeltas[1] = 5000000;   // 0.5 units: no line at all
    Draw();
    EXPECT_NEAR(114 - 1, Top(161, kRed), 2);
    EXPECT_NEAR(114 - 2, Top(168, kRed), 2);
    EXPECT_EQ(-1, Top(168, kBlue));
    EXPECT_NE(kRed, At(168, 100));
    // The same tick unwrapped (the ">10MB" row's 48 units) would reach y 66.
    EXPECT_NE(kRed, At(168, 70));
}

TEST_F(LiveGraphDrawing, HiResDoublesEveryCoordinate)
{
    g_item.screenWidth = 480;
    g_item.screenHeight = 640;
    Samples(1, 0, 0);
    g_item.inDeltas[0] = 512;
    g_item.outDeltas[0] = 0;
    Draw(2);
    EXPECT_EQ(kBlue, GetPixel(surface_, 336, 226));
    EXPECT_EQ(kBlue, GetPixel(surface_, 336, 132));
    EXPECT_NE(kBlue, GetPixel(surface_, 336, 124));
    EXPECT_NEAR(128, Top(336, kBlue), 2);
    EXPECT_NE(kWhite, GetPixel(surface_, 300, 228));   // the stretched image's axis
    for (int j = 0; j < LIVEGRAPH_LABELS; j++)
        EXPECT_GT(LabelInk(j), 10) << j;
}

// The dialog built from its template, as the tap opens it.
class LiveGraphDialog : public DeviceTest {
protected:
    HWND Open()
    {
        HINSTANCE instance = GetModuleHandleW(nullptr);
        HRSRC res = FindResourceW(instance, MAKEINTRESOURCEW(IDD_LIVEGRAPH), MAKEINTRESOURCEW(5));
        EXPECT_NE(nullptr, res);
        auto tpl = (LPCDLGTEMPLATEW)LockResource(LoadResource(instance, res));
        return CreateDialogIndirectParamW(instance, tpl, nullptr, LiveGraphDlgProc, 0);
    }
};

TEST_F(LiveGraphDialog, OpensCentredAndOnePixelLarger)
{
    fake::SetScreen(320, 240);
    HWND dialog = Open();
    ASSERT_NE(nullptr, dialog);
    EXPECT_EQ(320, g_item.screenWidth);   // refreshed on opening
    EXPECT_EQ(240, g_item.screenHeight);

    WCHAR title[32];
    HWND child = GetWindow(dialog, GW_CHILD);
    GetWindowTextW(child, title, 32);
    EXPECT_STREQ(L"Traffic", title);
    EXPECT_NE(nullptr, GetDlgItem(dialog, IDOK));

    // The template's size, plus one each way.
    HINSTANCE instance = GetModuleHandleW(nullptr);
    HRSRC res = FindResourceW(instance, MAKEINTRESOURCEW(IDD_LIVEGRAPH), MAKEINTRESOURCEW(5));
    HWND plain = CreateDialogIndirectParamW(
        instance, (LPCDLGTEMPLATEW)LockResource(LoadResource(instance, res)), nullptr,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    RECT expected, rc;
    GetWindowRect(plain, &expected);
    DestroyWindow(plain);
    GetWindowRect(dialog, &rc);
    int w = expected.right - expected.left, h = expected.bottom - expected.top;
    EXPECT_EQ(w + 1, rc.right - rc.left);
    EXPECT_EQ(h + 1, rc.bottom - rc.top);
    EXPECT_EQ((320 - (w + 1)) / 2, rc.left);
    EXPECT_EQ((240 - (h + 1)) / 2, rc.top);
    // The painted surface fits inside at normal resolution.
    RECT client;
    GetClientRect(dialog, &client);
    EXPECT_GE(client.right, LIVEGRAPH_SURFACE_X + LIVEGRAPH_WIDTH);
    RECT ok;
    GetWindowRect(GetDlgItem(dialog, IDOK), &ok);
    MapWindowPoints(nullptr, dialog, (POINT *)&ok, 2);
    EXPECT_GE(ok.top, LIVEGRAPH_SURFACE_Y + LIVEGRAPH_HEIGHT);

    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    DestroyWindow(dialog);
}

TEST_F(LiveGraphDialog, ReopensAfterClosing)
{
    // Closing stops the timer and frees the pens, so a second opening starts afresh.
    for (int round = 0; round < 2; round++) {
        HWND dialog = Open();
        ASSERT_NE(nullptr, dialog);
        EXPECT_TRUE(KillTimer(dialog, LIVEGRAPH_TIMER_ID)) << round;   // it was running
        SetTimer(dialog, LIVEGRAPH_TIMER_ID, LIVEGRAPH_PERIOD_MS, nullptr);
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        EXPECT_FALSE(KillTimer(dialog, LIVEGRAPH_TIMER_ID)) << round;
        DestroyWindow(dialog);
    }
}

} // namespace
