// taps_test.cpp: the strip's hit test, the landscape templates and what a tap launches.
#include "tests/support.h"

#include "charts/charts.h"
#include "item/strip.h"
#include "resources/resource.h"

using fake::g_device;

namespace {

class TapTest : public DeviceTest {
protected:
    void Screen(int w, int h)
    {
        fake::SetScreen(w, h);
        IsLandscape();
    }
    void Tap(int x, int y) { SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    int LastTemplate()
    {
        return g_device.dialogs.empty() ? 0 : fake::TemplateId(GetModuleHandleW(nullptr), g_device.dialogs.back().dialogTemplate);
    }
};

// Each row of the icon row's table: its range at s = 1 and its target.
struct Range {
    int left, right, target;
} const kRanges[] = {
    {50, 66, kTargetSignal},     {145, 161, kTargetScanner}, {164, 180, kTargetCard},
    {69, 85, kTargetUsage},      {88, 104, kTargetDhcp},     {107, 123, kTargetPing},
    {183, 199, kTargetIntruder}, {202, 218, kTargetApplet17}, {221, 237, kTargetApplet19},
    {126, 142, kTargetAdapter},
};

TEST_F(TapTest, IconRowRangesIncludeBothBoundsOnANormalScreen)
{
    for (const Range &r : kRanges) {
        EXPECT_EQ(r.target, HitTestIconRow(r.left, 4)) << r.left;
        EXPECT_EQ(r.target, HitTestIconRow(r.right, 20)) << r.right;
        EXPECT_EQ(r.target, HitTestIconRow((r.left + r.right) / 2, 12)) << r.left;
        // The row is 4..20: one above or below misses.
        EXPECT_EQ(kTargetNone, HitTestIconRow(r.left, 3)) << r.left;
        EXPECT_EQ(kTargetNone, HitTestIconRow(r.left, 21)) << r.left;
    }
    // The gaps between the icons hit nothing.
    for (int x : {0, 49, 67, 68, 86, 87, 105, 106, 124, 125, 143, 144, 162, 163, 181, 182, 200, 201, 219, 220, 238})
        EXPECT_EQ(kTargetNone, HitTestIconRow(x, 10)) << x;
}

TEST_F(TapTest, IconRowOnAHiResScreenDoublesXButNotTheRowsTop)
{
    Screen(480, 640);
    for (const Range &r : kRanges) {
        EXPECT_EQ(r.target, HitTestIconRow(2 * r.left, 4)) << r.left;
        EXPECT_EQ(r.target, HitTestIconRow(2 * r.right, 36)) << r.right;
        EXPECT_EQ(kTargetNone, HitTestIconRow(2 * r.left - 1, 20)) << r.left;
        EXPECT_EQ(kTargetNone, HitTestIconRow(2 * r.right + 1, 20)) << r.right;
        EXPECT_EQ(kTargetNone, HitTestIconRow(2 * r.left, 3)) << r.left;
        EXPECT_EQ(kTargetNone, HitTestIconRow(2 * r.left, 37)) << r.left;
    }
}

TEST_F(TapTest, GraphAreaBoxesAreFixed)
{
    struct {
        int x, y;
        bool hit;
    } normal[] = {{3, 1, true},   {47, 23, true},  {10, 10, true}, {2, 10, false},
                  {48, 10, false}, {10, 0, false},  {10, 24, false}},
      hires[] = {{3, 3, true},    {91, 36, true},  {2, 10, false}, {92, 10, false},
                 {10, 2, false},  {10, 37, false}, {47, 23, true}};
    for (auto c : normal)
        EXPECT_EQ(c.hit, HitTestGraph(c.x, c.y)) << c.x << "," << c.y;
    Screen(480, 640);
    for (auto c : hires)
        EXPECT_EQ(c.hit, HitTestGraph(c.x, c.y)) << c.x << "," << c.y;
}

TEST_F(TapTest, LandscapeTemplatesForTheFourToolsThatHaveOne)
{
    struct {
        int w, h;
        bool wide;
    } screens[] = {{240, 320, false}, {480, 640, false}, {320, 240, true}, {640, 480, true}, {480, 480, true}};
    for (auto sc : screens) {
        fake::SetScreen(sc.w, sc.h);        // the tap re-reads the size itself
        EXPECT_EQ(sc.wide ? IDD_USAGE_WIDE : IDD_USAGE, TargetTemplate(kTargetUsage)) << sc.w;
        EXPECT_EQ(sc.wide ? IDD_SCANNER_WIDE : IDD_SCANNER, TargetTemplate(kTargetScanner)) << sc.w;
        EXPECT_EQ(sc.wide ? IDD_PING_WIDE : IDD_PING, TargetTemplate(kTargetPing)) << sc.w;
        EXPECT_EQ(sc.wide ? IDD_ADAPTER_WIDE : IDD_ADAPTER, TargetTemplate(kTargetAdapter)) << sc.w;
        EXPECT_EQ(IDD_SIGNAL, TargetTemplate(kTargetSignal));
        EXPECT_EQ(IDD_CARD, TargetTemplate(kTargetCard));
        EXPECT_EQ(IDD_DHCP, TargetTemplate(kTargetDhcp));
        EXPECT_EQ(IDD_INTRUDER, TargetTemplate(kTargetIntruder));
        EXPECT_EQ(IDD_LIVEGRAPH, TargetTemplate(kTargetLiveGraph));
        EXPECT_EQ(0, TargetTemplate(kTargetApplet17));
        EXPECT_EQ(0, TargetTemplate(kTargetApplet19));
    }
}

TEST_F(TapTest, OnlyTheFourReReadTheScreen)
{
    CreateItem();
    fake::SetScreen(320, 240);               // turned, not yet read
    Tap(90, 10);                              // DHCP: one template, no re-read
    EXPECT_EQ(240, g_item.screenWidth);
    Tap(70, 10);                              // usage: re-reads
    EXPECT_EQ(320, g_item.screenWidth);
    EXPECT_EQ(240, g_item.screenHeight);
}

TEST_F(TapTest, GraphTapOpensTheLiveGraph)
{
    CreateItem();
    Tap(10, 10);
    ASSERT_EQ(1u, g_device.dialogs.size());
    EXPECT_EQ(IDD_LIVEGRAPH, LastTemplate());
    EXPECT_EQ(item_, g_device.dialogs[0].owner);
    EXPECT_EQ((DLGPROC)LiveGraphDlgProc, g_device.dialogs[0].proc);

    Tap(10, 24);
    Tap(50, 3);                               // above the row and right of the graph
    Tap(48, 10);
    EXPECT_EQ(1u, g_device.dialogs.size());

    Screen(480, 640);
    Tap(91, 36);
    ASSERT_EQ(2u, g_device.dialogs.size());
    EXPECT_EQ(IDD_LIVEGRAPH, LastTemplate());
    Tap(92, 36);
    Tap(91, 37);
    EXPECT_EQ(2u, g_device.dialogs.size());
}

TEST_F(TapTest, UsageTapChoosesItsTemplateByOrientation)
{
    CreateItem();
    struct {
        int w, h, x, y, tpl;
    } cases[] = {{240, 320, 69, 4, IDD_USAGE},         {320, 240, 85, 20, IDD_USAGE_WIDE},
                 {480, 480, 138, 36, IDD_USAGE_WIDE},  {480, 640, 170, 4, IDD_USAGE}};
    for (auto c : cases) {
        Screen(c.w, c.h);
        g_device.dialogs.clear();
        Tap(c.x, c.y);
        ASSERT_EQ(1u, g_device.dialogs.size()) << c.w << "x" << c.h;
        EXPECT_EQ(c.tpl, LastTemplate()) << c.w << "x" << c.h;
        EXPECT_EQ((DLGPROC)UsageDlgProc, g_device.dialogs[0].proc);
        EXPECT_EQ(item_, g_device.dialogs[0].owner);
    }
}

TEST_F(TapTest, AppletsStartTheControlPanel)
{
    CreateItem();
    Tap(202, 4);
    Tap(237, 20);
    Screen(480, 640);
    Tap(404, 36);
    Tap(474, 4);
    Tap(475, 4);                              // right of the last range
    ASSERT_EQ(4u, g_device.processes.size());
    const wchar_t *lines[] = {L"cplmain.cpl,17", L"cplmain.cpl,19", L"cplmain.cpl,17", L"cplmain.cpl,19"};
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(L"\\Windows\\ctlpnl.exe", g_device.processes[i].application);
        EXPECT_EQ(lines[i], g_device.processes[i].commandLine);
    }
    EXPECT_TRUE(g_device.dialogs.empty());

    // A failed start is not reported; the next tap works.
    fake::FailCall(fake::kCreateProcess, 1);
    Tap(404, 4);
    Tap(442, 4);
    EXPECT_EQ(5u, g_device.processes.size());
    EXPECT_TRUE(g_device.messageBoxes.empty());
}

TEST_F(TapTest, ToolsWithoutATemplateDoNothing)
{
    CreateItem();
    // Each tap opens its own template when the tool is built, and nothing otherwise.
    struct {
        int x, tpl;
    } tools[] = {{50, IDD_SIGNAL},  {145, IDD_SCANNER}, {164, IDD_CARD},   {88, IDD_DHCP},
                 {107, IDD_PING},   {183, IDD_INTRUDER}, {126, IDD_ADAPTER}};
    for (auto t : tools) {
        g_device.dialogs.clear();
        Tap(t.x, 10);
        bool built = FindResourceW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(t.tpl), RT_DIALOG) != nullptr;
        if (!built) {
            EXPECT_TRUE(g_device.dialogs.empty()) << t.tpl;
        } else if (!g_device.dialogs.empty()) {
            EXPECT_EQ(t.tpl, LastTemplate());
        }
    }
    EXPECT_TRUE(g_device.processes.empty());
    EXPECT_TRUE(g_device.messageBoxes.empty());
}

TEST_F(TapTest, PositionIsReadAsTwoUnsignedHalves)
{
    CreateItem();
    // x 0xFFFF is far right, not -1; y 10 in the high half.
    SendMessageW(item_, WM_LBUTTONUP, 0, (LPARAM)0x000AFFFF);
    EXPECT_TRUE(g_device.dialogs.empty());
    EXPECT_EQ(0, SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(10, 10)));
    EXPECT_EQ(1u, g_device.dialogs.size());
}

} // namespace
