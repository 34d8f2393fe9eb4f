// render_test.cpp: the strip's graph, signal icon and tool icons, by pixels.
#include "tests/support.h"

#include "item/strip.h"
#include "resources/resource.h"

#include <utility>

namespace {

const COLORREF kBlue = RGB(0, 0, 255), kRed = RGB(255, 0, 0), kSilver = RGB(192, 192, 192);
const COLORREF kWhite = RGB(255, 255, 255), kFrame = RGB(138, 154, 176);   // the graph bitmaps' frame

// Ring entries that are not 0: {index, bytes}.
using Deltas = std::vector<std::pair<int, DWORD>>;

class StripTest : public DeviceTest {
protected:
    void SetUp() override { DeviceTest::SetUp(); UseScreen(240, 320); }
    void TearDown() override { g_item.surfaceDC = nullptr; g_item.gdiReady = false; DeviceTest::TearDown(); }
    // The screen, a graph surface of its size and an item-sized canvas.
    void UseScreen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();
        s = IsHiResScreen() ? 2 : 1;
        surface.Make(STRIP_SURFACE_WIDTH * s, STRIP_SURFACE_HEIGHT * s);
        item.Make(240 * s, 8 + 16 * s);
        g_item.surfaceDC = surface.dc;
        g_item.gdiReady = true;
    }
    // The rings as the tick leaves them, `count` samples from `start`; the
    // graph drawn, and the leftmost and rightmost columns that differ from
    // the background alone (the baseline row left out).
    std::pair<int, int> Draw(int count, int start, Deltas in, Deltas out)
    {
        ZeroMemory(g_item.inDeltas, sizeof g_item.inDeltas);
        ZeroMemory(g_item.outDeltas, sizeof g_item.outDeltas);
        for (auto d : in)
            g_item.inDeltas[d.first] = d.second;
        for (auto d : out)
            g_item.outDeltas[d.first] = d.second;
        g_item.ringStart = start;
        g_item.ringIndex = (start + count - 1) % RING_SIZE;
        g_item.sampleCount = 0;
        DrawStatusStrip(nullptr, item.dc, false);
        std::vector<COLORREF> background = surface.Pixels();
        g_item.sampleCount = count;
        DrawStatusStrip(nullptr, item.dc, false);
        std::pair<int, int> span = {9999, -1};
        for (int y = 0; y < surface.height; y++)
            for (int x = 0; x < surface.width; x++)
                if (y != 20 + 11 * (s - 1) && surface.At(x, y) != background[y * surface.width + x])
                    span = {std::min(span.first, x), std::max(span.second, x)};
        return span;
    }

    Canvas surface, item;
    int s = 1;
};

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
        {"no sample: nothing, not even the baseline", 240, 0, 0, {{0, 5000}}, {{0, 5000}}, {9999, -1}, {}},
        {"one sample: single pixels at R", 240, 1, 0, {{0, 5000}}, {{0, 50000}}, {41, 41}, {{41, 16, kBlue}, {41, 11, kRed}}},
        {"one sample, equal: red is set last", 240, 1, 0, {{0, 50000}}, {{0, 50000}}, {41, 41}, {{41, 11, kRed}}},
        {"3 samples at 37, 39, 41; blue flat at 4, red from the baseline to 2", 240, 3, 0,
         {{1, 5000}, {2, 5000}}, {{2, 1000}}, {37, 40}, {{39, 16, kBlue}, {40, 16, kBlue}, {40, 19, kRed}}},
        {"hi-res, height 10, R 85", 480, 3, 0, {{1, 10000}, {2, 10000}}, {}, {81, 84}, {{83, 21, kBlue}}},
        // Wrapped: entries 5..19 at x 3..31, then 0..4 at 33..41; 19 -> 0 joins
        // entry 19's height 18 to entry 0's 4.
        {"wrapped at 5", 240, RING_SIZE, 5, {{19, 800000}, {0, 5000}, {3, 800000}, {4, 800000}},
         {{5, 1000}, {6, 1000}}, {3, 40}, {{31, 2, kBlue}, {32, 9, kBlue}, {40, 2, kBlue}, {3, 18, kRed}}},
    };
    for (auto &c : cases) {
        UseScreen(c.w, c.w * 4 / 3);
        EXPECT_EQ(c.span, Draw(c.count, c.start, c.in, c.out)) << c.what;
        for (Pixel p : c.want)
            EXPECT_EQ(p.colour, surface.At(p.x, p.y)) << c.what << " at " << p.x << "," << p.y;
        // The silver baseline from x 1 to R (LineTo leaves R + 1 out), with a sample only.
        int base = s == 1 ? 20 : 31, right = s == 1 ? 41 : 85, copyY = s == 1 ? 1 : 3;
        for (int x = 0; x <= right + 1; x++)
            EXPECT_EQ(c.count > 0 && x >= 1 && x <= right, surface.At(x, base) == kSilver) << c.what << ", x " << x;
        // The background bitmap (44 x 22, 88 x 33) at the surface origin, copied to the item at (3, 1 or 3).
        EXPECT_EQ(kFrame, surface.At(44 * s - 1, s == 1 ? 21 : 32)) << c.what;
        int rows = std::min(surface.height, 33);
        EXPECT_EQ(Pixels(surface.dc, 0, 0, surface.width, rows), Pixels(item.dc, 3, copyY, surface.width, rows)) << c.what;
        EXPECT_TRUE(item.At(2, copyY) == kWhite && item.At(3, copyY - 1) == kWhite) << c.what;
    }
}

TEST(SignalBand, EdgesOfTheFiveBands)
{
    const int edges[][2] = {{-200, 0}, {-90, 0}, {-89, 1}, {-81, 1}, {-80, 2}, {-71, 2}, {-70, 3}, {-67, 3}, {-66, 4}};
    for (auto e : edges)
        EXPECT_EQ(e[1], SignalBand(e[0])) << e[0];
}

TEST_F(StripTest, EachRefreshReplacesTheSignalIconOverTheTodayBackground)
{
    // Drawn over its predecessor, the lowest band's cross stayed under the
    // next band's bars and the icon's soft edges darkened refresh by refresh.
    const COLORREF today = RGB(230, 238, 250);
    CreateItem();
    for (int sc : {1, 2}) {
        UseScreen(240 * sc, 320 * sc);
        g_watermarkColour = today;
        Fill(item.dc, 0, 0, item.width, item.height, today);
        for (int dbm : {-200, -60, -95}) {
            g_item.signalDbm = dbm;
            for (int refresh = 0; refresh < 12; refresh++)
                DrawStatusStrip(item_, item.dc, false);
            int icon = (s == 1 ? IDI_SIGNAL0 : IDI_SIGNAL0_HIRES) + (dbm > -67 ? 4 : 0);
            EXPECT_EQ(IconOver(today, icon, 16 * s), Pixels(item.dc, 50 * s, 4, 16 * s, 16 * s)) << dbm << " dBm, s " << s;
        }
    }
}

TEST_F(StripTest, ToolIconsInTheirPlacesAtTheirOwnSize)
{
    const int icons[][2] = {{IDI_TOOL_USAGE, IDI_TOOL_USAGE_HIRES},       {IDI_TOOL_DHCP, IDI_TOOL_DHCP_HIRES},
                            {IDI_TOOL_PING, IDI_TOOL_PING_HIRES},         {IDI_TOOL_ADAPTER, IDI_TOOL_ADAPTER_HIRES},
                            {IDI_TOOL_SCANNER, IDI_TOOL_SCANNER_HIRES},   {IDI_TOOL_CARD, IDI_TOOL_CARD_HIRES},
                            {IDI_TOOL_INTRUDER, IDI_TOOL_INTRUDER_HIRES}, {IDI_TOOL_APPLET17, IDI_TOOL_APPLET17_HIRES},
                            {IDI_TOOL_APPLET19, IDI_TOOL_APPLET19_HIRES}};
    g_item.signalDbm = -50;
    for (int sc : {2, 1}) {
        UseScreen(240 * sc, 320 * sc);
        DrawItem(nullptr, item.dc, true);
        // The device loads an icon without a size at 32 pixels: a 16-pixel
        // one would spill over its neighbour's place. They stand 19 apart from 69.
        for (int i = 0; i < 9; i++)
            EXPECT_EQ(IconOver(kWhite, icons[i][s - 1], 16 * s), Pixels(item.dc, (69 + 19 * i) * s, 4, 16 * s, 16 * s)) << i;
    }
    // 215 is never used, so it is not supplied; a missing icon is skipped.
    EXPECT_EQ(nullptr, LoadItemIcon(215, 16));
}

} // namespace
