// livegraph_test.cpp: the live graph's columns by pixels (its ladder is checked with the usage chart's).
#include "tests/support.h"

#include "charts/livegraph.h"
#include "resources/resource.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);

// The painter on a black surface of the graph's size, with the dialog's pens
// and background; hi-res is seen end to end.
using LiveGraphDrawing = DeviceTest;

TEST_F(LiveGraphDrawing, ColumnsOfTheRing)
{
    // A column's height rounds down; v x 100 is 32-bit: 42,949,673 x 100 wraps to 4.
    EXPECT_TRUE(LiveGraphColumnHeight(1023, 1024) == 99 && LiveGraphColumnHeight(10, 10240) == 0);
    EXPECT_TRUE(LiveGraphColumnHeight(42949672, 1024000000) == 4 && LiveGraphColumnHeight(42949673, 1024000000) == 0);
    std::vector<DWORD> ramp;   // entry i holds (i + 1) x 40 bytes: 3 units for entry 0, 78 for entry 19
    for (int i = 0; i < RING_SIZE; i++)
        ramp.push_back((i + 1) * 40);
    // A line of `height` units in column x, seen from its top; 0: no line of that colour there.
    struct Line { int x; COLORREF colour; int height; };
    const struct {
        const char *what;
        int count, start, index;
        std::vector<DWORD> out, in;
        std::vector<Line> lines;
    } cases[] = {
        {"no sample yet: the background only", 0, -1, -1, {5000}, {5000}, {{168, kBlue, 0}, {168, kRed, 0}}},
        {"one sample stands at the right edge", 1, 0, 0, {0}, {512}, {{168, kBlue, 50}, {168, kRed, 0}, {161, kBlue, 0}}},
        {"received bytes choose the scale too: 5,000 of 10 KB", 1, 0, 0, {100}, {5000}, {{168, kBlue, 48}, {168, kRed, 0}}},
        {"a growing ring steps left from the newest", 3, 0, 2, {}, {1000, 500, 250},
         {{154, kBlue, 97}, {161, kBlue, 48}, {168, kBlue, 24}, {147, kBlue, 0}}},
        {"a wrapped ring is walked from its oldest entry, 5", 20, 5, 4, ramp, {},
         {{35, kRed, 23}, {133, kRed, 78}, {140, kRed, 3}, {168, kRed, 19}, {28, kRed, 0}, {175, kRed, 0}}},
        {"the smaller line in front; on a tie blue", 2, 0, 1, {800, 600}, {400, 600},
         {{161, kRed, 78}, {161, kBlue, 39}, {168, kBlue, 58}, {168, kRed, 0}}},
        {"above 42,949,672 bytes v x 100 wraps: 2 units, not 48", 2, 0, 1, {12000000, 500000000}, {0, 5000000},
         {{161, kRed, 1}, {168, kRed, 2}, {168, kBlue, 0}}},
    };
    HBITMAP background = LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDB_LIVEGRAPH));
    HDC image = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(image, background);
    HPEN red = CreatePen(PS_SOLID, 3, kRed), blue = CreatePen(PS_SOLID, 3, kBlue);
    Canvas canvas;
    canvas.Make(LIVEGRAPH_WIDTH, LIVEGRAPH_HEIGHT);
    for (const auto &c : cases) {
        g_item.sampleCount = c.count;
        g_item.ringStart = c.start;
        g_item.ringIndex = c.index;
        for (int i = 0; i < RING_SIZE; i++) {
            g_item.outDeltas[i] = i < (int)c.out.size() ? c.out[i] : 0;
            g_item.inDeltas[i] = i < (int)c.in.size() ? c.in[i] : 0;
        }
        PatBlt(canvas.dc, 0, 0, canvas.width, canvas.height, BLACKNESS);
        DrawLiveGraph(canvas.dc, image, {0, 0, 300, 200}, red, blue, 1);
        for (const Line &l : c.lines) {
            for (int x = l.x - 1; x <= l.x + 1; x++) {   // three pixels wide, seen from the top
                std::vector<COLORREF> column = Pixels(canvas.dc, x, 0, 1, canvas.height);
                int top = (int)(std::find(column.begin(), column.end(), l.colour) - column.begin());
                EXPECT_NEAR(l.height ? LIVEGRAPH_BASELINE - l.height : canvas.height, top, l.height ? 2 : 0)
                    << c.what << ", x " << x;
            }
        }
    }
    DeleteObject(red);
    DeleteObject(blue);
    SelectObject(image, old);
    DeleteDC(image);
    DeleteObject(background);
}

} // namespace
