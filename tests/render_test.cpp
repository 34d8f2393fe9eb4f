// render_test.cpp: the strip's graph heights, mini graph, signal icon and tool icons, by pixels.
#include "tests/support.h"

#include "item/strip.h"
#include "resources/resource.h"

#include <vector>

namespace {

const COLORREF kBlue = RGB(0, 0, 255);
const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kSilver = RGB(192, 192, 192);
const COLORREF kWhite = RGB(255, 255, 255);

// A memory DC over a 32-bit DIB, white, owned by the test.
struct Canvas {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ old = nullptr;
    int width = 0, height = 0;

    void Make(int w, int h)
    {
        width = w;
        height = h;
        BITMAPINFO bi = {};
        bi.bmiHeader.biSize = sizeof bi.bmiHeader;
        bi.bmiHeader.biWidth = w;
        bi.bmiHeader.biHeight = -h;
        bi.bmiHeader.biPlanes = 1;
        bi.bmiHeader.biBitCount = 32;
        void *bits = nullptr;
        dc = CreateCompatibleDC(nullptr);
        bitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
        old = SelectObject(dc, bitmap);
        RECT rc = {0, 0, w, h};
        FillRect(dc, &rc, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    }
    void Free()
    {
        if (dc) {
            SelectObject(dc, old);
            DeleteDC(dc);
            DeleteObject(bitmap);
        }
        dc = nullptr;
        bitmap = nullptr;
    }
    COLORREF At(int x, int y) const { return GetPixel(dc, x, y); }
    std::vector<COLORREF> Pixels() const
    {
        std::vector<COLORREF> v;
        for (int y = 0; y < height; y++)
            for (int x = 0; x < width; x++)
                v.push_back(At(x, y));
        return v;
    }
};

class StripTest : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        UseScreen(240, 320);
    }
    void TearDown() override
    {
        FreeSurface();
        item.Free();
        DeviceTest::TearDown();
    }

    // The screen, the item surface of its size and an item-sized canvas.
    void UseScreen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();                     // re-reads the size into the item state
        int s = IsHiResScreen() ? 2 : 1;
        FreeSurface();
        surface.Make(STRIP_SURFACE_WIDTH * s, STRIP_SURFACE_HEIGHT * s);
        g_item.surfaceDC = surface.dc;
        g_item.surfaceBitmap = surface.bitmap;
        g_item.surfaceOldBitmap = surface.old;
        item.Free();
        item.Make(240 * s, 24 + 16 * (s - 1));
    }
    void FreeSurface()
    {
        if (g_item.surfaceDC == surface.dc) {
            g_item.surfaceDC = nullptr;
            g_item.surfaceBitmap = nullptr;
        }
        surface.Free();
    }

    // The rings as the tick leaves them after `count` samples (not wrapped).
    void Samples(int count, std::vector<DWORD> in, std::vector<DWORD> out)
    {
        g_item.sampleCount = count;
        g_item.ringStart = 0;
        g_item.ringIndex = count > 0 ? count - 1 : -1;
        for (int i = 0; i < RING_SIZE; i++) {
            g_item.inDeltas[i] = i < (int)in.size() ? in[i] : 0;
            g_item.outDeltas[i] = i < (int)out.size() ? out[i] : 0;
        }
    }

    // The surface as only the background leaves it.
    std::vector<COLORREF> BackgroundOnly()
    {
        int count = g_item.sampleCount;
        g_item.sampleCount = 0;
        DrawStatusStrip(nullptr, item.dc, true);
        g_item.sampleCount = count;
        return surface.Pixels();
    }

    // Surface pixels that differ from the background, except the baseline row.
    std::vector<POINT> Changed(const std::vector<COLORREF> &background, int base)
    {
        std::vector<POINT> changed;
        for (int y = 0; y < surface.height; y++)
            for (int x = 0; x < surface.width; x++)
                if (y != base && surface.At(x, y) != background[y * surface.width + x])
                    changed.push_back({x, y});
        return changed;
    }

    Canvas surface, item;
};

using GraphHeightTest = StripTest;

TEST_F(GraphHeightTest, BandEdgesOnANormalScreen)
{
    struct {
        DWORD bytes;
        int height;
    } cases[] = {
        {0, 0},          {1, 1},          {999, 1},         {1000, 2},        {1999, 2},
        {2000, 3},       {9999, 6},       {10000, 7},       {19999, 7},       {20000, 8},
        {99999, 11},     {100000, 13},    {199999, 13},     {499999, 16},     {500000, 17},
        {799999, 17},    {800000, 18},    {0xFFFFFFFFu, 18},
    };
    for (auto c : cases)
        EXPECT_EQ(c.height, GraphHeight(c.bytes)) << c.bytes;
    // Height 12 is skipped: 99999 gives 11 and 100000 already 13.
    for (DWORD v = 0; v < 1000000; v += 997)
        EXPECT_NE(12, GraphHeight(v)) << v;
}

TEST_F(GraphHeightTest, HiResAddsHalfAgain)
{
    UseScreen(480, 640);
    struct {
        DWORD bytes;
        int height;
    } cases[] = {
        {0, 0}, {999, 1}, {1000, 3}, {2000, 4}, {9999, 9}, {10000, 10},
        {99999, 16}, {100000, 19}, {499999, 24}, {500000, 25}, {800000, 27},
    };
    for (auto c : cases)
        EXPECT_EQ(c.height, GraphHeight(c.bytes)) << c.bytes;
    // Either dimension above 320 makes the screen hi-res.
    UseScreen(321, 240);
    EXPECT_EQ(27, GraphHeight(800000));
    UseScreen(320, 320);
    EXPECT_EQ(18, GraphHeight(800000));
}

using GraphTest = StripTest;

TEST_F(GraphTest, NoSampleDrawsOnlyTheBackground)
{
    Samples(0, {}, {});
    DrawStatusStrip(nullptr, item.dc, true);
    // The background is the frame and paper of bitmap 113 at the surface origin.
    EXPECT_EQ(RGB(138, 154, 176), surface.At(0, 0));
    EXPECT_EQ(RGB(138, 154, 176), surface.At(43, 21));
    EXPECT_NE(kSilver, surface.At(20, STRIP_GRAPH_BASELINE));
    // Copied to the item at (3, 1); nothing left of it.
    EXPECT_EQ(RGB(138, 154, 176), item.At(3, 1));
    EXPECT_EQ(RGB(138, 154, 176), item.At(46, 22));
    EXPECT_EQ(kWhite, item.At(2, 1));
    EXPECT_EQ(kWhite, item.At(3, 0));

    g_item.sampleCount = -1;
    DrawStatusStrip(nullptr, item.dc, true);
    EXPECT_NE(kSilver, surface.At(20, STRIP_GRAPH_BASELINE));
}

TEST_F(GraphTest, OneSampleSetsTwoSinglePixelsAtTheRightEdge)
{
    Samples(1, {5000}, {50000});             // heights 4 and 9
    auto background = BackgroundOnly();
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kBlue, surface.At(41, 16));
    EXPECT_EQ(kRed, surface.At(41, 11));
    auto changed = Changed(background, STRIP_GRAPH_BASELINE);
    EXPECT_EQ(2u, changed.size());

    // Equal heights: the red pixel is set last.
    Samples(1, {50000}, {50000});
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kRed, surface.At(41, 11));
    EXPECT_EQ(1u, Changed(background, STRIP_GRAPH_BASELINE).size());

    // Nothing when both increments are 0, but the baseline is there.
    Samples(1, {0}, {0});
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_TRUE(Changed(background, STRIP_GRAPH_BASELINE).empty());
    EXPECT_EQ(kSilver, surface.At(20, STRIP_GRAPH_BASELINE));
}

TEST_F(GraphTest, PartialRingsEndAtTheRightEdge)
{
    // Three samples: points at x 37, 39, 41; the newest at R = 41.
    Samples(3, {0, 5000, 5000}, {0, 0, 1000});
    auto background = BackgroundOnly();
    DrawStatusStrip(nullptr, item.dc, false);
    // The flat blue step from (39, 16) to (41, 16); the line's end pixel is GDI's to leave out.
    EXPECT_EQ(kBlue, surface.At(39, 16));
    EXPECT_EQ(kBlue, surface.At(40, 16));
    // The red step rises from the baseline at 39 to height 2 at 41.
    EXPECT_EQ(kRed, surface.At(40, 19));
    // Nothing left of the oldest point or right of R.
    for (const POINT &p : Changed(background, STRIP_GRAPH_BASELINE)) {
        EXPECT_GE(p.x, 37) << p.x << "," << p.y;
        EXPECT_LE(p.x, 41) << p.x << "," << p.y;
    }
    // A line whose ends both lie on the baseline is not drawn: the first step
    // (37 -> 39) is all zeros for red, so red appears only right of 39.
    for (int y = 0; y < surface.height; y++)
        for (int x = 0; x < 39; x++)
            EXPECT_NE(kRed, surface.At(x, y)) << x << "," << y;
}

TEST_F(GraphTest, SteepNewestStepReachesR)
{
    Samples(2, {0, 800000}, {0, 0});          // from the baseline to height 18
    DrawStatusStrip(nullptr, item.dc, false);
    bool atR = false;
    for (int y = 2; y < 20; y++)
        atR = atR || surface.At(41, y) == kBlue;
    EXPECT_TRUE(atR);
    EXPECT_NE(kBlue, surface.At(42, 3));
}

TEST_F(GraphTest, SilverBaselineFromOneToR)
{
    Samples(5, {}, {});
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kSilver, surface.At(1, 20));
    EXPECT_EQ(kSilver, surface.At(41, 20));
    EXPECT_NE(kSilver, surface.At(0, 20));
    EXPECT_NE(kSilver, surface.At(42, 20));   // LineTo leaves its end point out

    UseScreen(480, 640);
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kSilver, surface.At(1, 31));
    EXPECT_EQ(kSilver, surface.At(85, 31));
    EXPECT_NE(kSilver, surface.At(86, 31));
}

TEST_F(GraphTest, FullRingWalksFromStartThroughNineteenToZero)
{
    // Wrapped: the oldest entry is 5, the newest 4; 15 entries (5..19) at x 3..31,
    // then 0..4 at x 33..41.
    Samples(0, {}, {});
    g_item.sampleCount = RING_SIZE;
    g_item.ringStart = 5;
    g_item.ringIndex = 4;
    g_item.inDeltas[19] = 800000;                            // height 18, then
    g_item.inDeltas[0] = 5000;                               // height 4 after the wrap
    g_item.inDeltas[3] = g_item.inDeltas[4] = 800000;        // height 18, the newest two
    g_item.outDeltas[5] = g_item.outDeltas[6] = 1000;        // height 2, the oldest two
    auto background = BackgroundOnly();
    DrawStatusStrip(nullptr, item.dc, false);

    // 19 -> 0 joins entry 19's height at x 31 to entry 0's at x 33.
    EXPECT_EQ(kBlue, surface.At(31, 2));
    int middle = 0;
    for (int y = 3; y < 16; y++)
        middle += surface.At(32, y) == kBlue;
    EXPECT_GT(middle, 3);
    // The newest step, 3 -> 4, is flat at the top and ends at R.
    EXPECT_EQ(kBlue, surface.At(39, 2));
    EXPECT_EQ(kBlue, surface.At(40, 2));
    // The oldest entries sit at x = R - 38 = 3.
    EXPECT_EQ(kRed, surface.At(3, 18));
    EXPECT_EQ(kRed, surface.At(4, 18));
    for (const POINT &p : Changed(background, STRIP_GRAPH_BASELINE)) {
        EXPECT_GE(p.x, 3);
        EXPECT_LE(p.x, 41);
    }
    EXPECT_EQ(kSilver, surface.At(41, 20));
}

TEST_F(GraphTest, FullRingFromZeroCoversEachEntryOnce)
{
    Samples(RING_SIZE, {}, {});
    g_item.ringStart = 0;
    g_item.ringIndex = 19;
    g_item.inDeltas[0] = g_item.inDeltas[1] = 5000;           // the oldest at x 3
    g_item.outDeltas[18] = g_item.outDeltas[19] = 100000;     // the newest at R, height 13
    auto background = BackgroundOnly();
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kBlue, surface.At(3, 16));
    EXPECT_EQ(kBlue, surface.At(4, 16));
    EXPECT_EQ(kRed, surface.At(39, 7));
    EXPECT_EQ(kRed, surface.At(40, 7));
    // Once only: nothing of entry 0 drawn again past R.
    for (const POINT &p : Changed(background, STRIP_GRAPH_BASELINE))
        EXPECT_LE(p.x, 41);
}

TEST_F(GraphTest, HiResGeometry)
{
    UseScreen(480, 640);
    Samples(1, {800000}, {0});               // height 27 at R = 85
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kBlue, surface.At(85, 4));
    // Bitmap 203 at the origin, copied to the item at (3, 3), 88 x 33.
    EXPECT_EQ(RGB(138, 154, 176), surface.At(0, 0));
    EXPECT_EQ(RGB(138, 154, 176), surface.At(87, 32));
    EXPECT_EQ(RGB(138, 154, 176), item.At(3, 3));
    EXPECT_EQ(kBlue, item.At(3 + 85, 3 + 4));
    EXPECT_EQ(kWhite, item.At(3, 2));
    EXPECT_EQ(kWhite, item.At(91, 10));

    Samples(3, {0, 10000, 10000}, {});      // height 10 on hi-res
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(kBlue, surface.At(83, 21));
    EXPECT_EQ(kBlue, surface.At(84, 21));
}

TEST_F(GraphTest, NoSurfaceDrawsNoGraph)
{
    FreeSurface();
    Samples(3, {5000, 5000, 5000}, {});
    DrawStatusStrip(nullptr, item.dc, true);
    for (int y = 0; y < item.height; y++)
        for (int x = 0; x < 48; x++)
            ASSERT_EQ(kWhite, item.At(x, y)) << x << "," << y;
}

// The pixels an icon leaves on white at (x, y) of a fresh item canvas.
std::vector<COLORREF> IconPixels(int id, int size)
{
    Canvas c;
    c.Make(size, size);
    DrawStripIcon(c.dc, id, 0, 0);
    auto v = c.Pixels();
    c.Free();
    return v;
}

std::vector<COLORREF> Region(const Canvas &c, int x0, int y0, int size)
{
    std::vector<COLORREF> v;
    for (int y = y0; y < y0 + size; y++)
        for (int x = x0; x < x0 + size; x++)
            v.push_back(c.At(x, y));
    return v;
}

bool AllWhite(const std::vector<COLORREF> &v)
{
    for (COLORREF c : v)
        if (c != kWhite)
            return false;
    return true;
}

using SignalIconTest = StripTest;

TEST_F(SignalIconTest, BandsPickTheirIcons)
{
    struct {
        int dbm, icon;
    } cases[] = {
        {-200, IDI_SIGNAL0}, {-90, IDI_SIGNAL0}, {-89, IDI_SIGNAL1}, {-81, IDI_SIGNAL1},
        {-80, IDI_SIGNAL2},  {-71, IDI_SIGNAL2}, {-70, IDI_SIGNAL3}, {-67, IDI_SIGNAL3},
        {-66, IDI_SIGNAL4},  {-20, IDI_SIGNAL4},
    };
    for (auto c : cases) {
        item.Free();
        item.Make(240, 24);
        g_item.signalDbm = c.dbm;
        DrawStatusStrip(nullptr, item.dc, true);
        EXPECT_EQ(IconPixels(c.icon, 16), Region(item, 50, 4, 16)) << c.dbm;
        EXPECT_EQ(c.dbm, g_item.lastDrawnSignal);
    }
    // The five bands look different from each other.
    for (int a = IDI_SIGNAL0; a <= IDI_SIGNAL4; a++)
        for (int b = a + 1; b <= IDI_SIGNAL4; b++)
            EXPECT_NE(IconPixels(a, 16), IconPixels(b, 16)) << a << " " << b;
}

TEST_F(SignalIconTest, SteadySignalIsDrawnOnlyOnFullPaintOrChange)
{
    g_item.signalDbm = -60;
    DrawStatusStrip(nullptr, item.dc, true);
    item.Free();
    item.Make(240, 24);
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_TRUE(AllWhite(Region(item, 50, 4, 16)));

    g_item.signalDbm = -75;                  // a change is drawn without a full paint
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(IconPixels(IDI_SIGNAL2, 16), Region(item, 50, 4, 16));
    EXPECT_EQ(-75, g_item.lastDrawnSignal);
}

TEST_F(SignalIconTest, LowestBandIsRedrawnOnEveryRefresh)
{
    g_item.signalDbm = -200;
    g_item.lastDrawnSignal = -200;
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(IconPixels(IDI_SIGNAL0, 16), Region(item, 50, 4, 16));
    EXPECT_EQ(-90, g_item.lastDrawnSignal);

    // The stored -90 now differs from -200: drawn again, as a change.
    item.Free();
    item.Make(240, 24);
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(IconPixels(IDI_SIGNAL0, 16), Region(item, 50, 4, 16));
    EXPECT_EQ(-200, g_item.lastDrawnSignal);

    // A steady -90: drawn again every time, and the last drawn value stays -90.
    g_item.signalDbm = g_item.lastDrawnSignal = -90;
    item.Free();
    item.Make(240, 24);
    DrawStatusStrip(nullptr, item.dc, false);
    EXPECT_EQ(IconPixels(IDI_SIGNAL0, 16), Region(item, 50, 4, 16));
    EXPECT_EQ(-90, g_item.lastDrawnSignal);
}

TEST_F(SignalIconTest, HiResUsesItsOwnIconsAtDoubledX)
{
    UseScreen(480, 640);
    g_item.signalDbm = -50;
    DrawStatusStrip(nullptr, item.dc, true);
    EXPECT_EQ(IconPixels(IDI_SIGNAL4_HIRES, 32), Region(item, 100, 4, 32));
}

using ToolIconTest = StripTest;

const int kToolX[] = {69, 88, 107, 126, 145, 164, 183, 202, 221};
const int kToolNormal[] = {IDI_TOOL_USAGE,   IDI_TOOL_DHCP,     IDI_TOOL_PING,
                           IDI_TOOL_ADAPTER, IDI_TOOL_SCANNER,  IDI_TOOL_CARD,
                           IDI_TOOL_INTRUDER, IDI_TOOL_APPLET17, IDI_TOOL_APPLET19};
const int kToolHiRes[] = {IDI_TOOL_USAGE_HIRES,   IDI_TOOL_DHCP_HIRES,     IDI_TOOL_PING_HIRES,
                          IDI_TOOL_ADAPTER_HIRES, IDI_TOOL_SCANNER_HIRES,  IDI_TOOL_CARD_HIRES,
                          IDI_TOOL_INTRUDER_HIRES, IDI_TOOL_APPLET17_HIRES, IDI_TOOL_APPLET19_HIRES};

TEST_F(ToolIconTest, DrawItemPutsTheNineToolsInTheirPlaces)
{
    DrawItem(nullptr, item.dc, true);
    for (int i = 0; i < 9; i++) {
        auto want = IconPixels(kToolNormal[i], 16);
        EXPECT_FALSE(AllWhite(want)) << kToolNormal[i];
        EXPECT_EQ(want, Region(item, kToolX[i], 4, 16)) << kToolNormal[i];
    }
    // The icon row is the strip's only other content.
    EXPECT_EQ(kWhite, item.At(68, 10));
    EXPECT_EQ(kWhite, item.At(237, 10));

    UseScreen(480, 640);
    DrawItem(nullptr, item.dc, true);
    for (int i = 0; i < 9; i++)
        EXPECT_EQ(IconPixels(kToolHiRes[i], 32), Region(item, kToolX[i] * 2, 4, 32)) << kToolHiRes[i];
}

TEST_F(ToolIconTest, IconsKeepTheirNaturalSize)
{
    struct {
        int id, size;
    } cases[] = {{IDI_TOOL_USAGE, 16}, {IDI_TOOL_USAGE_HIRES, 32}, {IDI_SIGNAL0, 16},
                 {IDI_SIGNAL4_HIRES, 32}, {IDI_TASKBAR_BOTH0, 16}, {IDI_TASKBAR_SEND4_HIRES, 32}};
    for (auto c : cases) {
        HICON icon = LoadStripIcon(c.id);
        ASSERT_NE(nullptr, icon) << c.id;
        ICONINFO info;
        ASSERT_TRUE(GetIconInfo(icon, &info));
        BITMAP bm;
        GetObjectW(info.hbmColor, sizeof bm, &bm);
        EXPECT_EQ(c.size, bm.bmWidth) << c.id;
        EXPECT_EQ(c.size, bm.bmHeight) << c.id;
        DeleteObject(info.hbmColor);
        DeleteObject(info.hbmMask);
        DestroyIcon(icon);
    }
    // 215 is never used, so it is not supplied; a missing icon is skipped.
    EXPECT_EQ(nullptr, LoadStripIcon(215));
    DrawStripIcon(item.dc, 215, 0, 0);
    EXPECT_EQ(kWhite, item.At(0, 0));
}

TEST_F(ToolIconTest, PaintAnswersOne)
{
    CreateItem();
    ASSERT_NE(nullptr, item_);
    g_item.signalDbm = -50;
    g_item.lastDrawnSignal = -60;
    EXPECT_EQ(1, SendMessageW(item_, WM_PAINT, 0, 0));
    EXPECT_EQ(-50, g_item.lastDrawnSignal);
}

} // namespace
