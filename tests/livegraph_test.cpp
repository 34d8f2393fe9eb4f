// livegraph_test.cpp: the live graph's ladder, its columns by pixels, and its dialog.
#include "tests/support.h"

#include "charts/charts.h"
#include "charts/livegraph.h"
#include "resources/resource.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kWhite = RGB(255, 255, 255);

// Every row as users read it: its full scale, which is also the row's strict
// upper bound but for the last, and its labels from the top.
const struct { DWORD below, fullScale; const wchar_t *labels; } kLadder[] = {
    {1024, 1024, L"1.0KB 0.8KB 0.6KB 0.4KB 0.2KB"},         {10240, 10240, L"10KB 8KB 6KB 4KB 2KB"},
    {102400, 102400, L"100KB 80KB 60KB 40KB 20KB"},         {204800, 204800, L"200KB 160KB 120KB 80KB 40KB"},
    {307200, 307200, L"300KB 240KB 180KB 120KB 60KB"},      {409600, 409600, L"400KB 320KB 240KB 160KB 80KB"},
    {512000, 512000, L"500KB 400KB 300KB 200KB 100KB"},     {614400, 614400, L"600KB 480KB 360KB 240KB 120KB"},
    {716800, 716800, L"700KB 560KB 420KB 280KB 140KB"},     {819200, 819200, L"800KB 640KB 480KB 320KB 160KB"},
    {921600, 921600, L"900KB 720KB 540KB 360KB 180KB"},     {1024000, 1024000, L"1.0MB 0.8MB 0.6MB 0.4MB 0.2MB"},
    {2048000, 2048000, L"2.0MB 1.6MB 1.2MB 0.8MB 0.4MB"},   {3072000, 3072000, L"3.0MB 2.4MB 1.8MB 1.2MB 0.6MB"},
    {4096000, 4096000, L"4.0MB 3.2MB 2.4MB 1.6MB 0.8MB"},   {5120000, 5120000, L"5MB 4MB 3MB 2MB 1MB"},
    {6144000, 6144000, L"6.0MB 4.8MB 3.6MB 2.4MB 1.2MB"},   {7168000, 7168000, L"7.0MB 5.6MB 4.2MB 2.8MB 1.4MB"},
    {8192000, 8192000, L"8.0MB 6.4MB 4.8MB 3.2MB 1.6MB"},   {9216000, 9216000, L"9.0MB 7.2MB 5.4MB 3.6MB 1.8MB"},
    {10240000, 10240000, L"10MB 8MB 6MB 4MB 2MB"},          {0, 1024000000, L">10MB 8MB 6MB 4MB 2MB"},
};

TEST(LiveGraphScale, EveryRowFromThePreviousBoundToBelowItsOwn)
{
    DWORD from = 0;
    for (const auto &row : kLadder) {
        for (DWORD largest : {from, row.below ? row.below - 1 : 0xFFFFFFFF}) {
            const LiveGraphScale &scale = ChooseLiveGraphScale(largest);
            std::wstring labels = scale.labels[0];
            for (int j = 1; j < LIVEGRAPH_LABELS; j++)
                labels += std::wstring(L" ") + scale.labels[j];
            EXPECT_EQ(row.fullScale, scale.fullScale) << largest;
            EXPECT_EQ(row.labels, labels) << largest;
        }
        from = row.below;
    }
}

TEST(LiveGraphScale, ColumnHeightWrapsAndCaps)
{
    // v x 100 is 32-bit: 42,949,673 x 100 wraps to 4.
    // The cap is for values above the full scale, which the ladder itself never chooses.
    struct {
        DWORD value, fullScale, height;
    } cases[] = {{1023, 1024, 99},           {10, 10240, 0},     {42949672, 1024000000, 4},
                 {42949673, 1024000000, 0}, {5000, 1024, 100}};
    for (const auto &c : cases)
        EXPECT_EQ(c.height, LiveGraphColumnHeight(c.value, c.fullScale)) << c.value << " of " << c.fullScale;
}

// The painter on a black surface of the graph's size, with the dialog's pens and background.
class LiveGraphDrawing : public DeviceTest {
protected:
    void TearDown() override
    {
        canvas_.Free();
        DeviceTest::TearDown();
    }
    // The rings as the tick leaves them, drawn at scale s.
    void Draw(int s, int count, int start, int index, const std::vector<DWORD> &out, const std::vector<DWORD> &in)
    {
        g_item.sampleCount = count;
        g_item.ringStart = start;
        g_item.ringIndex = index;
        for (int i = 0; i < RING_SIZE; i++) {
            g_item.outDeltas[i] = i < (int)out.size() ? out[i] : 0;
            g_item.inDeltas[i] = i < (int)in.size() ? in[i] : 0;
        }
        scale_ = s;
        canvas_.Free();
        canvas_.Make(LIVEGRAPH_WIDTH * s, LIVEGRAPH_HEIGHT * s);
        PatBlt(canvas_.dc, 0, 0, canvas_.width, canvas_.height, BLACKNESS);
        HBITMAP background = LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDB_LIVEGRAPH));
        ASSERT_NE(nullptr, background);
        HDC image = CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(image, background);
        HPEN red = CreatePen(PS_SOLID, 3, kRed), blue = CreatePen(PS_SOLID, 3, kBlue);
        DrawLiveGraph(canvas_.dc, image, {0, 0, 300 * s, 200 * s}, red, blue, s);
        DeleteObject(red);
        DeleteObject(blue);
        SelectObject(image, old);
        DeleteDC(image);
        DeleteObject(background);
    }
    COLORREF At(int x, int y) { return canvas_.At(x * scale_, y * scale_); }   // logical units
    // The topmost row of colour c in column x (device pixels), or -1.
    int Top(int x, COLORREF c)
    {
        for (int y = 0; y < canvas_.height; y++)
            if (canvas_.At(x, y) == c)
                return y;
        return -1;
    }
    // Dark (text) pixels in the label box of level j.
    int LabelInk(int j)
    {
        int n = 0, s = scale_;
        for (int y = (7 + 20 * j) * s; y < (22 + 20 * j) * s; y++)
            for (int x = LIVEGRAPH_LABEL_LEFT * s; x < LIVEGRAPH_LABEL_RIGHT * s; x++)
                n += GetRValue(canvas_.At(x, y)) < 100;
        return n;
    }

    Canvas canvas_;
    int scale_ = 1;
};

TEST_F(LiveGraphDrawing, NoSamplesShowsTheBackgroundOnly)
{
    struct {
        int count, s;
    } cases[] = {{-1, 1}, {0, 2}};
    for (auto c : cases) {
        Draw(c.s, c.count, -1, -1, {5000}, {5000});   // deltas, but not samples yet
        int coloured = 0;   // over the plot, left of the legend
        for (int y = 0; y < LIVEGRAPH_HEIGHT; y++)
            for (int x = 0; x < 172; x++)
                coloured += At(x, y) == kRed || At(x, y) == kBlue;
        EXPECT_EQ(0, coloured) << c.count;
        for (int j = 0; j < LIVEGRAPH_LABELS; j++)
            EXPECT_EQ(0, LabelInk(j)) << c.count << " " << j;
        EXPECT_EQ(kWhite, At(1, 1)) << c.count;
        EXPECT_EQ(kWhite, At(209, 119)) << c.count;
        // The image's frame and axis lie where the painter's baseline is, stretched on hi-res.
        EXPECT_NE(kWhite, At(LIVEGRAPH_IMAGE_X, 60)) << c.count;
        EXPECT_NE(kWhite, At(100, LIVEGRAPH_BASELINE)) << c.count;
    }
}

TEST_F(LiveGraphDrawing, ColumnsOfTheRing)
{
    std::vector<DWORD> ramp;   // entry i holds (i + 1) x 40 bytes: 3 units for entry 0, 78 for entry 19
    for (int i = 0; i < RING_SIZE; i++)
        ramp.push_back((i + 1) * 40);
    // A line of `height` units in column x (logical), seen from its top; 0: no line of that colour there.
    struct Line {
        int x;
        COLORREF colour;
        int height;
    };
    struct {
        const char *what;
        int s, count, start, index;
        std::vector<DWORD> out, in;
        std::vector<Line> lines;
    } cases[] = {
        {"one sample stands at the right edge", 1, 1, 0, 0, {0}, {512},
         {{168, kBlue, 50}, {168, kRed, 0}, {161, kBlue, 0}}},
        {"received bytes choose the scale too: 5,000 of 10 KB", 1, 1, 0, 0, {100}, {5000},
         {{168, kBlue, 48}, {168, kRed, 0}}},
        {"hi-res doubles the coordinates, not the pens", 2, 1, 0, 0, {0}, {512}, {{168, kBlue, 50}}},
        {"a growing ring steps left from the newest", 1, 3, 0, 2, {}, {1000, 500, 250},
         {{154, kBlue, 97}, {161, kBlue, 48}, {168, kBlue, 24}, {147, kBlue, 0}}},
        {"a wrapped ring is walked from its oldest entry, 5", 1, 20, 5, 4, ramp, {},
         {{35, kRed, 23}, {133, kRed, 78}, {140, kRed, 3}, {168, kRed, 19}, {28, kRed, 0}, {175, kRed, 0}}},
        {"a full ring started at 0 is walked once", 1, 20, 0, 19, ramp, {}, {{35, kRed, 3}, {168, kRed, 78}}},
        {"the smaller line in front; on a tie blue", 1, 2, 0, 1, {800, 600}, {400, 600},
         {{161, kRed, 78}, {161, kBlue, 39}, {168, kBlue, 58}, {168, kRed, 0}}},
        {"above 42,949,672 bytes v x 100 wraps: 2 units, not 48", 1, 2, 0, 1, {12000000, 500000000},
         {0, 5000000}, {{161, kRed, 1}, {168, kRed, 2}, {168, kBlue, 0}}},
    };
    for (const auto &c : cases) {
        Draw(c.s, c.count, c.start, c.index, c.out, c.in);
        for (const Line &l : c.lines) {
            for (int x = l.x * c.s - 1; x <= l.x * c.s + 1; x++) {   // three pixels wide
                if (l.height == 0)
                    EXPECT_EQ(-1, Top(x, l.colour)) << c.what << ", x " << x;
                else
                    EXPECT_NEAR((LIVEGRAPH_BASELINE - l.height) * c.s, Top(x, l.colour), 2) << c.what << ", x " << x;
            }
        }
        for (int j = 0; j < LIVEGRAPH_LABELS; j++)
            EXPECT_GT(LabelInk(j), 5 * c.s) << c.what << ", label " << j;
    }
}

using LiveGraphDialog = DeviceTest;

TEST_F(LiveGraphDialog, OpensWithRoomForTheGraphAndClosingStopsTheTimer)
{
    fake::SetScreen(320, 240);
    for (int close : {IDOK, IDCANCEL}) {   // the second opening starts afresh
        HWND dialog = CreateFromTemplate(IDD_LIVEGRAPH, LiveGraphDlgProc);
        EXPECT_EQ(320, g_item.screenWidth);   // refreshed on opening
        WCHAR title[32];
        GetWindowTextW(GetWindow(dialog, GW_CHILD), title, 32);
        EXPECT_STREQ(L"Traffic", title);
        RECT client, ok;
        // The painted surface fits inside, above the button, with the device's font metrics.
        GetClientRect(dialog, &client);
        EXPECT_GE(client.right, LIVEGRAPH_SURFACE_X + LIVEGRAPH_WIDTH);
        GetWindowRect(GetDlgItem(dialog, IDOK), &ok);
        MapWindowPoints(nullptr, dialog, (POINT *)&ok, 2);
        EXPECT_GE(ok.top, LIVEGRAPH_SURFACE_Y + LIVEGRAPH_HEIGHT);

        EXPECT_TRUE(KillTimer(dialog, LIVEGRAPH_TIMER_ID)) << close;   // it was running
        SetTimer(dialog, LIVEGRAPH_TIMER_ID, LIVEGRAPH_PERIOD_MS, nullptr);
        SendMessageW(dialog, WM_COMMAND, close, 0);
        EXPECT_FALSE(KillTimer(dialog, LIVEGRAPH_TIMER_ID)) << close;
        DestroyWindow(dialog);
    }
}

} // namespace
