// render_test.cpp: the strip's graph heights, mini graph, signal icon and tool icons, by pixels.
#include "tests/support.h"

#include "item/strip.h"
#include "resources/resource.h"

#include <utility>
#include <vector>

namespace {

const COLORREF kBlue = RGB(0, 0, 255), kRed = RGB(255, 0, 0), kSilver = RGB(192, 192, 192);
const COLORREF kWhite = RGB(255, 255, 255), kFrame = RGB(138, 154, 176);   // the graph bitmaps' frame

// Ring entries that are not 0: {index, bytes}.
using Deltas = std::vector<std::pair<int, DWORD>>;

class StripTest : public DeviceTest {
protected:
    void SetUp() override { DeviceTest::SetUp(); UseScreen(240, 320); }
    void TearDown() override { FreeSurface(); item.Free(); DeviceTest::TearDown(); }
    int Scale() { return IsHiResScreen() ? 2 : 1; }
    // The screen, a graph surface of its size and an item-sized canvas.
    void UseScreen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();
        FreeSurface();
        surface.Make(STRIP_SURFACE_WIDTH * Scale(), STRIP_SURFACE_HEIGHT * Scale());
        g_item.surfaceDC = surface.dc;
        g_item.gdiReady = true;
        item.Free();
        item.Make(240 * Scale(), 8 + 16 * Scale());
    }
    void FreeSurface() { g_item.surfaceDC = nullptr; g_item.gdiReady = false; surface.Free(); }

    // The rings as the tick leaves them: `count` samples, the oldest at `start`.
    void Samples(int count, Deltas in, Deltas out, int start = 0)
    {
        g_item.sampleCount = count;
        g_item.ringStart = start;
        g_item.ringIndex = (start + count - 1) % RING_SIZE;
        ZeroMemory(g_item.inDeltas, sizeof g_item.inDeltas);
        ZeroMemory(g_item.outDeltas, sizeof g_item.outDeltas);
        for (auto d : in)
            g_item.inDeltas[d.first] = d.second;
        for (auto d : out)
            g_item.outDeltas[d.first] = d.second;
    }

    // Draws the graph; the surface pixels that differ from the background
    // alone (the baseline row left out), and their leftmost and rightmost columns.
    std::pair<size_t, std::pair<int, int>> Draw()
    {
        int count = g_item.sampleCount, base = IsHiResScreen() ? 31 : 20;
        g_item.sampleCount = 0;
        DrawStatusStrip(nullptr, item.dc, true);
        std::vector<COLORREF> background = surface.Pixels();
        g_item.sampleCount = count;
        DrawStatusStrip(nullptr, item.dc, false);
        std::pair<size_t, std::pair<int, int>> d = {0, {9999, -1}};
        for (int y = 0; y < surface.height; y++)
            for (int x = 0; x < surface.width; x++)
                if (y != base && surface.At(x, y) != background[y * surface.width + x])
                    d.first++, d.second = {std::min(d.second.first, x), std::max(d.second.second, x)};
        return d;
    }

    Canvas surface, item;
};

TEST_F(StripTest, GraphHeightAtItsEdgesAndHalfAgainOnHiRes)
{
    const struct { DWORD bytes; int normal, hires; } cases[] = {
        {0, 0, 0}, {999, 1, 1}, {1000, 2, 3}, {9999, 6, 9}, {10000, 7, 10}, {99999, 11, 16},
        {100000, 13, 19}, {499999, 16, 24}, {500000, 17, 25}, {800000, 18, 27}};
    // Hi-res: either dimension above 320.
    const struct { int w, h; bool hires; } screens[] = {{320, 320, false}, {321, 240, true}, {240, 321, true}};
    for (auto sc : screens) {
        UseScreen(sc.w, sc.h);
        for (auto c : cases)
            EXPECT_EQ(sc.hires ? c.hires : c.normal, GraphHeight(c.bytes)) << c.bytes << " on " << sc.w << "x" << sc.h;
    }
}

TEST_F(StripTest, GeometryOnNormalAndHiResScreens)
{
    const struct { int w, copyY, bitmapW, bitmapH, base, right, top; } screens[] = {
        {240, 1, 44, 22, 20, 41, 2}, {480, 3, 88, 33, 31, 85, 4}};
    for (auto sc : screens) {
        UseScreen(sc.w, sc.w * 4 / 3);
        Samples(1, {{0, 800000}}, {});                       // the highest point
        Draw();
        // The background bitmap at the surface origin, copied to the item at (3, copyY).
        EXPECT_EQ(kFrame, surface.At(sc.bitmapW - 1, sc.bitmapH - 1)) << sc.w;
        EXPECT_EQ(kFrame, item.At(3, sc.copyY)) << sc.w;
        EXPECT_EQ(kWhite, item.At(2, sc.copyY)) << sc.w;
        EXPECT_EQ(kWhite, item.At(3, sc.copyY - 1)) << sc.w;
        EXPECT_EQ(kBlue, item.At(3 + sc.right, sc.copyY + sc.top)) << sc.w;
        // The silver baseline from x 1 to R (LineTo leaves its end point, R + 1, out).
        for (int x = 0; x <= sc.right + 1; x++)
            EXPECT_EQ(x >= 1 && x <= sc.right, surface.At(x, sc.base) == kSilver) << x << " on " << sc.w;
    }
}

TEST_F(StripTest, NoneOrOneSampleSetsOnlySinglePixelsAtR)
{
    const struct { int count; DWORD in, out; int blueY, redY; size_t changed; } cases[] = {
        {1, 5000, 50000, 16, 11, 2},          // heights 4 and 9
        {1, 50000, 50000, -1, 11, 1},         // equal: red is set last
        {1, 0, 0, -1, -1, 0},                 // nothing, but the baseline
        {0, 5000, 5000, -1, -1, 0},           // no sample: not even the baseline
    };
    for (auto c : cases) {
        Samples(c.count, {{0, c.in}}, {{0, c.out}});
        EXPECT_EQ(c.changed, Draw().first) << c.count << ": " << c.in << "/" << c.out;
        EXPECT_TRUE(c.blueY < 0 || surface.At(41, c.blueY) == kBlue) << c.in << "/" << c.out;
        EXPECT_TRUE(c.redY < 0 || surface.At(41, c.redY) == kRed) << c.in << "/" << c.out;
        EXPECT_EQ(c.count > 0, surface.At(20, 20) == kSilver) << c.count;
    }
}

TEST_F(StripTest, RingsAreWalkedOldestToNewestEndingAtR)
{
    struct Pixel { int x, y; COLORREF colour; };
    // Flat last steps end one short of R: LineTo leaves the end pixel out.
    const struct {
        const char *what;
        int w, count, start;
        Deltas in, out;
        std::pair<int, int> span;
        std::vector<Pixel> want;
    } cases[] = {
        {"3 samples at 37, 39, 41; blue flat at 4, red from the baseline to 2", 240, 3, 0,
         {{1, 5000}, {2, 5000}}, {{2, 1000}}, {37, 40}, {{39, 16, kBlue}, {40, 16, kBlue}, {40, 19, kRed}}},
        {"hi-res, height 10, R 85", 480, 3, 0, {{1, 10000}, {2, 10000}}, {}, {81, 84}, {{83, 21, kBlue}}},
        // Wrapped: entries 5..19 at x 3..31, then 0..4 at 33..41; 19 -> 0 joins
        // entry 19's height 18 to entry 0's 4.
        {"wrapped at 5", 240, RING_SIZE, 5, {{19, 800000}, {0, 5000}, {3, 800000}, {4, 800000}},
         {{5, 1000}, {6, 1000}}, {3, 40}, {{31, 2, kBlue}, {32, 9, kBlue}, {40, 2, kBlue}, {3, 18, kRed}}},
        {"full from 0: each entry once", 240, RING_SIZE, 0, {{0, 5000}, {1, 5000}},
         {{18, 100000}, {19, 100000}}, {3, 40}, {{4, 16, kBlue}, {40, 7, kRed}}},
    };
    for (auto &c : cases) {
        UseScreen(c.w, c.w * 4 / 3);
        Samples(c.count, c.in, c.out, c.start);
        EXPECT_EQ(c.span, Draw().second) << c.what;
        for (Pixel p : c.want)
            EXPECT_EQ(p.colour, surface.At(p.x, p.y)) << c.what << " at " << p.x << "," << p.y;
    }
}

TEST_F(StripTest, SignalIconByBandAndWhenItIsRedrawn)
{
    const struct { int dbm, last; bool full; int band, lastAfter; } cases[] = {   // band -1: not drawn
        {-200, NO_SIGNAL, true, 0, -200}, {-90, 0, true, 0, -90},  {-89, 0, true, 1, -89},
        {-81, 0, true, 1, -81},           {-80, 0, true, 2, -80},   {-71, 0, true, 2, -71},
        {-70, 0, true, 3, -70},           {-67, 0, true, 3, -67},   {-66, 0, true, 4, -66},
        // Steady: drawn only on a full paint or a change, but the lowest band
        // on every refresh, stored as -90.
        {-60, -60, false, -1, -60},       {-89, -89, false, -1, -89}, {-75, -60, false, 2, -75},
        {-200, -200, false, 0, -90},      {-200, -90, false, 0, -200},
    };
    for (int s : {1, 2}) {
        UseScreen(240 * s, 320 * s);
        for (auto c : cases) {
            PatBlt(item.dc, 0, 0, item.width, item.height, WHITENESS);
            g_item.signalDbm = c.dbm;
            g_item.lastDrawnSignal = c.last;
            DrawStatusStrip(nullptr, item.dc, c.full);
            int icon = (s == 1 ? IDI_SIGNAL0 : IDI_SIGNAL0_HIRES) + c.band;
            auto want = c.band >= 0 ? IconOver(kWhite, icon, 16 * s) : std::vector<COLORREF>(256 * s * s, kWhite);
            EXPECT_EQ(want, item.Square(50 * s, 4, 16 * s)) << c.dbm << " after " << c.last << ", s " << s;
            EXPECT_EQ(c.lastAfter, g_item.lastDrawnSignal) << c.dbm << " after " << c.last;
        }
    }
}

TEST_F(StripTest, EachRefreshReplacesTheSignalIconOverTheTodayBackground)
{
    // Drawn over its predecessor, the lowest band's cross stayed under the
    // next band's bars and the icon's soft edges darkened refresh by refresh.
    const COLORREF today = RGB(230, 238, 250);
    CreateItem();
    for (int s : {1, 2}) {
        UseScreen(240 * s, 320 * s);
        g_watermarkColour = today;
        HBRUSH brush = CreateSolidBrush(today);
        RECT all = {0, 0, item.width, item.height};
        FillRect(item.dc, &all, brush);
        DeleteObject(brush);
        for (int dbm : {-200, -60, -95}) {
            g_item.signalDbm = dbm;
            for (int refresh = 0; refresh < 12; refresh++)
                DrawStatusStrip(item_, item.dc, false);
            int icon = (s == 1 ? IDI_SIGNAL0 : IDI_SIGNAL0_HIRES) + (dbm > -67 ? 4 : 0);
            EXPECT_EQ(IconOver(today, icon, 16 * s), item.Square(50 * s, 4, 16 * s)) << dbm << " dBm, s " << s;
        }
    }
}

TEST_F(StripTest, ToolIconsInTheirPlacesAtTheirOwnSize)
{
    const struct { int x, normal, hires; } icons[] = {
        {69, IDI_TOOL_USAGE, IDI_TOOL_USAGE_HIRES},        {88, IDI_TOOL_DHCP, IDI_TOOL_DHCP_HIRES},
        {107, IDI_TOOL_PING, IDI_TOOL_PING_HIRES},         {126, IDI_TOOL_ADAPTER, IDI_TOOL_ADAPTER_HIRES},
        {145, IDI_TOOL_SCANNER, IDI_TOOL_SCANNER_HIRES},   {164, IDI_TOOL_CARD, IDI_TOOL_CARD_HIRES},
        {183, IDI_TOOL_INTRUDER, IDI_TOOL_INTRUDER_HIRES}, {202, IDI_TOOL_APPLET17, IDI_TOOL_APPLET17_HIRES},
        {221, IDI_TOOL_APPLET19, IDI_TOOL_APPLET19_HIRES},
    };
    g_item.signalDbm = -50;
    for (int s : {2, 1}) {
        UseScreen(240 * s, 320 * s);
        DrawItem(nullptr, item.dc, true);
        // The device loads an icon without a size at 32 pixels: a 16-pixel
        // one would spill over its neighbour's place.
        for (auto i : icons)
            EXPECT_EQ(IconOver(kWhite, s == 1 ? i.normal : i.hires, 16 * s), item.Square(i.x * s, 4, 16 * s)) << i.x;
    }
    for (int x : {66, 68, 86, 87, 237})                       // nothing between or beside them
        for (int y = 0; y < item.height; y++)
            ASSERT_EQ(kWhite, item.At(x, y)) << x << "," << y;
    // 215 is never used, so it is not supplied; a missing icon is skipped.
    EXPECT_EQ(nullptr, LoadItemIcon(215, 16));
}

TEST_F(StripTest, PaintDrawsInFullAndAnswersOne)
{
    CreateItem();
    // A steady lowest band: a refresh would store -90, a full paint the value itself.
    g_item.signalDbm = g_item.lastDrawnSignal = -200;
    EXPECT_EQ(1, SendMessageW(item_, WM_PAINT, 0, 0));
    EXPECT_EQ(-200, g_item.lastDrawnSignal);
}

} // namespace
