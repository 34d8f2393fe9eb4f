// render_test.cpp: the strip's graph heights, mini graph, signal icon and tool icons, by pixels.
#include "tests/support.h"

#include "item/strip.h"
#include "resources/resource.h"

#include <utility>
#include <vector>

namespace {

const COLORREF kBlue = RGB(0, 0, 255);
const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kSilver = RGB(192, 192, 192);
const COLORREF kWhite = RGB(255, 255, 255);
const COLORREF kFrame = RGB(138, 154, 176);   // the graph bitmaps' frame

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
        IsLandscape();                     // re-reads the size into the item state
        FreeSurface();
        surface.Make(STRIP_SURFACE_WIDTH * Scale(), STRIP_SURFACE_HEIGHT * Scale());
        g_item.surfaceDC = surface.dc;
        NewItem();
    }
    void NewItem() { item.Free(); item.Make(240 * Scale(), 8 + 16 * Scale()); }
    void FreeSurface() { g_item.surfaceDC = nullptr; surface.Free(); }

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

    // Draws the graph; counts the surface pixels that differ from the
    // background alone (the baseline row left out) and their leftmost and
    // rightmost columns.
    struct Drawn {
        size_t pixels;
        std::pair<int, int> span;
    };
    Drawn Draw()
    {
        int count = g_item.sampleCount, base = IsHiResScreen() ? 31 : 20;
        g_item.sampleCount = 0;
        DrawStatusStrip(nullptr, item.dc, true);
        std::vector<COLORREF> background = surface.Pixels();
        g_item.sampleCount = count;
        DrawStatusStrip(nullptr, item.dc, false);
        Drawn d = {0, {9999, -1}};
        for (int y = 0; y < surface.height; y++)
            for (int x = 0; x < surface.width; x++)
                if (y != base && surface.At(x, y) != background[y * surface.width + x])
                    d.pixels++, d.span = {std::min(d.span.first, x), std::max(d.span.second, x)};
        return d;
    }

    Canvas surface, item;
};

TEST_F(StripTest, GraphHeightAtEveryBandEdge)
{
    struct {
        DWORD bytes;
        int normal, hires;
    } cases[] = {
        {0, 0, 0},        {1, 1, 1},        {999, 1, 1},      {1000, 2, 3},     {1999, 2, 3},
        {2000, 3, 4},     {9999, 6, 9},     {10000, 7, 10},   {19999, 7, 10},   {20000, 8, 12},
        {99999, 11, 16},  {100000, 13, 19}, {199999, 13, 19}, {499999, 16, 24}, {500000, 17, 25},
        {799999, 17, 25}, {800000, 18, 27}, {0xFFFFFFFFu, 18, 27},
    };
    // Hi-res: either dimension above 320.
    struct {
        int w, h;
        bool hires;
    } screens[] = {{240, 320, false}, {480, 640, true}, {321, 240, true}, {240, 321, true}, {320, 320, false}};
    for (auto sc : screens) {
        UseScreen(sc.w, sc.h);
        for (auto c : cases)
            EXPECT_EQ(sc.hires ? c.hires : c.normal, GraphHeight(c.bytes)) << c.bytes << " on " << sc.w << "x" << sc.h;
    }
}

TEST_F(StripTest, GeometryOnNormalAndHiResScreens)
{
    struct {
        int w, h, copyY, bitmapW, bitmapH, base, right, top;
    } screens[] = {{240, 320, 1, 44, 22, 20, 41, 2}, {480, 640, 3, 88, 33, 31, 85, 4}};
    for (auto sc : screens) {
        UseScreen(sc.w, sc.h);
        Samples(1, {{0, 800000}}, {});                       // the highest point
        Draw();
        // The background bitmap at the surface origin, copied to the item at (3, copyY).
        EXPECT_EQ(kFrame, surface.At(0, 0)) << sc.w;
        EXPECT_EQ(kFrame, surface.At(sc.bitmapW - 1, sc.bitmapH - 1)) << sc.w;
        EXPECT_EQ(kFrame, item.At(3, sc.copyY)) << sc.w;
        EXPECT_EQ(kWhite, item.At(2, sc.copyY)) << sc.w;
        EXPECT_EQ(kWhite, item.At(3, sc.copyY - 1)) << sc.w;
        EXPECT_EQ(kBlue, surface.At(sc.right, sc.top)) << sc.w;
        EXPECT_EQ(kBlue, item.At(3 + sc.right, sc.copyY + sc.top)) << sc.w;
        // The silver baseline from x 1 to R (LineTo leaves its end point, R + 1, out).
        for (int x = 0; x <= sc.right + 1; x++)
            EXPECT_EQ(x >= 1 && x <= sc.right, surface.At(x, sc.base) == kSilver) << x << " on " << sc.w;
    }
    EXPECT_EQ(kWhite, item.At(91, 10));                     // the 88-pixel block ends at 90
}

TEST_F(StripTest, NoneOrOneSampleSetsOnlySinglePixelsAtR)
{
    struct {
        int count;
        DWORD in, out;
        int blueY, redY;                      // -1: not drawn
        size_t changed;
    } cases[] = {
        {1, 5000, 50000, 16, 11, 2},          // heights 4 and 9
        {1, 50000, 50000, -1, 11, 1},         // equal: red is set last
        {1, 5000, 0, 16, -1, 1},
        {1, 0, 0, -1, -1, 0},                 // nothing, but the baseline
        {0, 5000, 5000, -1, -1, 0},           // no sample: not even the baseline
        {-1, 5000, 5000, -1, -1, 0},
    };
    for (auto c : cases) {
        Samples(c.count, {{0, c.in}}, {{0, c.out}});
        EXPECT_EQ(c.changed, Draw().pixels) << c.count << ": " << c.in << "/" << c.out;
        EXPECT_TRUE(c.blueY < 0 || surface.At(41, c.blueY) == kBlue) << c.in << "/" << c.out;
        EXPECT_TRUE(c.redY < 0 || surface.At(41, c.redY) == kRed) << c.in << "/" << c.out;
        EXPECT_EQ(c.count > 0, surface.At(20, 20) == kSilver) << c.count;
    }
    // Without a surface nothing of the graph reaches the item.
    FreeSurface();
    NewItem();
    Samples(3, {{0, 5000}, {1, 5000}, {2, 5000}}, {});
    DrawStatusStrip(nullptr, item.dc, true);
    for (int y = 0; y < item.height; y++)
        for (int x = 0; x < 48; x++)
            ASSERT_EQ(kWhite, item.At(x, y)) << x << "," << y;
}

TEST_F(StripTest, RingsAreWalkedOldestToNewestEndingAtR)
{
    struct Pixel {
        int x, y;
        COLORREF colour;
    };
    // Flat last steps end one short of R: LineTo leaves the end pixel out.
    struct {
        const char *what;
        int w, count, start;
        Deltas in, out;
        std::pair<int, int> span;
        std::vector<Pixel> want;
    } cases[] = {
        {"3 samples at 37, 39, 41; blue flat at 4, red from the baseline to 2", 240, 3, 0,
         {{1, 5000}, {2, 5000}}, {{2, 1000}}, {37, 40}, {{39, 16, kBlue}, {40, 16, kBlue}, {40, 19, kRed}}},
        {"steep newest step", 240, 2, 0, {{1, 800000}}, {}, {39, 41}, {}},
        {"hi-res, height 10, R 85", 480, 3, 0, {{1, 10000}, {2, 10000}}, {}, {81, 84}, {{83, 21, kBlue}, {84, 21, kBlue}}},
        // Wrapped: entries 5..19 at x 3..31, then 0..4 at 33..41; 19 -> 0 joins
        // entry 19's height 18 to entry 0's 4.
        {"wrapped at 5", 240, RING_SIZE, 5, {{19, 800000}, {0, 5000}, {3, 800000}, {4, 800000}},
         {{5, 1000}, {6, 1000}}, {3, 40},
         {{31, 2, kBlue}, {32, 9, kBlue}, {40, 2, kBlue}, {3, 18, kRed}, {4, 18, kRed}}},
        {"full from 0: each entry once", 240, RING_SIZE, 0, {{0, 5000}, {1, 5000}},
         {{18, 100000}, {19, 100000}}, {3, 40}, {{4, 16, kBlue}, {40, 7, kRed}}},
    };
    for (auto &c : cases) {
        UseScreen(c.w, c.w * 4 / 3);
        Samples(c.count, c.in, c.out, c.start);
        EXPECT_EQ(c.span, Draw().span) << c.what;
        for (Pixel p : c.want)
            EXPECT_EQ(p.colour, surface.At(p.x, p.y)) << c.what << " at " << p.x << "," << p.y;
    }
}

// What an icon leaves on white. Drawn on twice its size, so that an icon
// stretched beyond its natural size shows.
std::vector<COLORREF> IconPixels(int id, int size)
{
    Canvas c;
    c.Make(2 * size, 2 * size);
    DrawStripIcon(c.dc, id, 0, 0);
    std::vector<COLORREF> v;
    int beyond = 0;
    for (int y = 0; y < 2 * size; y++)
        for (int x = 0; x < 2 * size; x++)
            if (x < size && y < size)
                v.push_back(c.At(x, y));
            else
                beyond += c.At(x, y) != kWhite;
    EXPECT_EQ(0, beyond) << "icon " << id << " drawn beyond " << size << " pixels";
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

TEST_F(StripTest, SignalIconByBandAndWhenItIsRedrawn)
{
    struct {
        int dbm, last;
        bool full;
        int icon, lastAfter;                  // icon 0: nothing drawn
    } cases[] = {
        {-200, NO_SIGNAL, true, IDI_SIGNAL0, -200}, {-90, NO_SIGNAL, true, IDI_SIGNAL0, -90},
        {-89, NO_SIGNAL, true, IDI_SIGNAL1, -89},   {-81, NO_SIGNAL, true, IDI_SIGNAL1, -81},
        {-80, NO_SIGNAL, true, IDI_SIGNAL2, -80},   {-71, NO_SIGNAL, true, IDI_SIGNAL2, -71},
        {-70, NO_SIGNAL, true, IDI_SIGNAL3, -70},   {-67, NO_SIGNAL, true, IDI_SIGNAL3, -67},
        {-66, NO_SIGNAL, true, IDI_SIGNAL4, -66},   {-20, NO_SIGNAL, true, IDI_SIGNAL4, -20},
        // Steady: drawn only on a full paint or a change...
        {-60, -60, false, 0, -60},                  {-89, -89, false, 0, -89},
        {-75, -60, false, IDI_SIGNAL2, -75},
        // ...but the lowest band on every refresh, stored as -90.
        {-200, -200, false, IDI_SIGNAL0, -90},      {-200, -90, false, IDI_SIGNAL0, -200},
        {-90, -90, false, IDI_SIGNAL0, -90},
    };
    for (auto c : cases) {
        NewItem();
        g_item.signalDbm = c.dbm;
        g_item.lastDrawnSignal = c.last;
        DrawStatusStrip(nullptr, item.dc, c.full);
        auto want = c.icon ? IconPixels(c.icon, 16) : std::vector<COLORREF>(256, kWhite);
        EXPECT_EQ(want, Region(item, 50, 4, 16)) << c.dbm << " after " << c.last;
        EXPECT_EQ(c.lastAfter, g_item.lastDrawnSignal) << c.dbm << " after " << c.last;
    }
    for (int a = IDI_SIGNAL0; a < IDI_SIGNAL4; a++)          // the bands look different
        EXPECT_NE(IconPixels(a, 16), IconPixels(a + 1, 16)) << a;
}

TEST_F(StripTest, DrawItemPutsTheIconsInTheirPlaces)
{
    struct {
        int x, normal, hires;
    } icons[] = {
        {50, IDI_SIGNAL4, IDI_SIGNAL4_HIRES},
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
        for (auto i : icons) {
            auto want = IconPixels(s == 1 ? i.normal : i.hires, 16 * s);
            EXPECT_NE(std::vector<COLORREF>(want.size(), kWhite), want) << i.x;
            EXPECT_EQ(want, Region(item, i.x * s, 4, 16 * s)) << i.x << " s " << s;
        }
    }
    EXPECT_EQ(kWhite, item.At(68, 10));                      // nothing else in the row
    EXPECT_EQ(kWhite, item.At(237, 10));
    // 215 is never used, so it is not supplied; a missing icon is skipped.
    EXPECT_EQ(nullptr, LoadStripIcon(215));
    DrawStripIcon(item.dc, 215, 0, 0);
    EXPECT_EQ(kWhite, item.At(0, 0));
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
