// taps_test.cpp: the strip's hit test, the landscape templates and what a tap launches.
#include "tests/support.h"

#include "adapters/adapters.h"
#include "charts/charts.h"
#include "item/strip.h"
#include "resources/resource.h"
#include "wireless/tools.h"

using fake::g_device;

namespace {

class TapTest : public DeviceTest {
protected:
    void Screen(int w, int h) { fake::SetScreen(w, h); IsLandscape(); }
    void Tap(int x, int y) { SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    int LastTemplate()
    {
        return g_device.dialogs.empty() ? 0 : fake::TemplateId(GetModuleHandleW(nullptr), g_device.dialogs.back().dialogTemplate);
    }
};

TEST_F(TapTest, IconRowRangesIncludeBothBoundsAndOnlyXIsScaledWithTheRowsTop)
{
    struct {
        int left, right, target;              // at s = 1
    } ranges[] = {
        {50, 66, kTargetSignal},     {145, 161, kTargetScanner}, {164, 180, kTargetCard},
        {69, 85, kTargetUsage},      {88, 104, kTargetDhcp},     {107, 123, kTargetPing},
        {183, 199, kTargetIntruder}, {202, 218, kTargetApplet17}, {221, 237, kTargetApplet19},
        {126, 142, kTargetAdapter},
    };
    for (int s : {1, 2}) {
        Screen(240 * s, 320 * s);
        int bottom = 16 * s + 4;              // the top, 4, is not scaled
        for (auto r : ranges) {
            SCOPED_TRACE(testing::Message() << r.left << ".." << r.right << " s " << s);
            EXPECT_EQ(r.target, HitTestIconRow(r.left * s, 4));
            EXPECT_EQ(r.target, HitTestIconRow(r.right * s, bottom));
            // Outside: the gaps beside each range, above and below the row.
            EXPECT_EQ(kTargetNone, HitTestIconRow(r.left * s - 1, 10));
            EXPECT_EQ(kTargetNone, HitTestIconRow(r.right * s + 1, 10));
            EXPECT_EQ(kTargetNone, HitTestIconRow(r.left * s, 3));
            EXPECT_EQ(kTargetNone, HitTestIconRow(r.left * s, bottom + 1));
        }
    }
}

TEST_F(TapTest, GraphAreaBoxesAreFixed)
{
    struct {
        int s, x, y;
        bool hit;
    } cases[] = {
        {1, 3, 1, true},  {1, 47, 23, true}, {1, 2, 10, false}, {1, 48, 10, false}, {1, 10, 0, false}, {1, 10, 24, false},
        {2, 3, 3, true},  {2, 91, 36, true}, {2, 2, 10, false}, {2, 92, 10, false}, {2, 10, 2, false}, {2, 10, 37, false},
        {2, 47, 23, true},
    };
    for (auto c : cases) {
        Screen(240 * c.s, 320 * c.s);
        EXPECT_EQ(c.hit, HitTestGraph(c.x, c.y)) << c.x << "," << c.y << " s " << c.s;
    }
}

TEST_F(TapTest, LandscapeTemplatesForTheFourToolsThatHaveOne)
{
    struct {
        int target, portrait, landscape;
    } targets[] = {
        {kTargetUsage, IDD_USAGE, IDD_USAGE_WIDE}, {kTargetScanner, IDD_SCANNER, IDD_SCANNER_WIDE},
        {kTargetPing, IDD_PING, IDD_PING_WIDE},    {kTargetAdapter, IDD_ADAPTER, IDD_ADAPTER_WIDE},
        {kTargetSignal, IDD_SIGNAL, IDD_SIGNAL},   {kTargetCard, IDD_CARD, IDD_CARD},
        {kTargetDhcp, IDD_DHCP, IDD_DHCP},         {kTargetIntruder, IDD_INTRUDER, IDD_INTRUDER},
        {kTargetLiveGraph, IDD_LIVEGRAPH, IDD_LIVEGRAPH}, {kTargetApplet17, 0, 0}, {kTargetApplet19, 0, 0},
    };
    struct {
        int w, h;
        bool wide;
    } screens[] = {{240, 320, false}, {480, 640, false}, {320, 240, true}, {640, 480, true}, {480, 480, true}};
    for (auto sc : screens) {
        fake::SetScreen(sc.w, sc.h);          // not read yet: the choice reads it itself
        for (auto t : targets)
            EXPECT_EQ(sc.wide ? t.landscape : t.portrait, TargetTemplate(t.target)) << t.target << " on " << sc.w << "x" << sc.h;
    }
}

TEST_F(TapTest, OnlyTheFourReReadTheScreen)
{
    CreateItem();
    fake::SetScreen(320, 240);                // turned, not yet read
    Tap(90, 10);                              // DHCP: one template
    EXPECT_EQ(240, g_item.screenWidth);
    Tap(70, 10);                              // usage
    EXPECT_EQ(320, g_item.screenWidth);
    EXPECT_EQ(240, g_item.screenHeight);
}

TEST_F(TapTest, EachTapOpensItsDialogOrApplet)
{
    CreateItem();
    struct {
        int w, h, x, y, tpl;                  // tpl 0: no dialog
        const wchar_t *applet;
    } cases[] = {
        {240, 320, 10, 10, IDD_LIVEGRAPH},    {480, 640, 91, 36, IDD_LIVEGRAPH},  {240, 320, 50, 3, 0},
        {240, 320, 69, 4, IDD_USAGE},         {320, 240, 85, 20, IDD_USAGE_WIDE}, {480, 480, 138, 36, IDD_USAGE_WIDE},
        {480, 640, 170, 4, IDD_USAGE},
        {240, 320, 88, 10, IDD_DHCP},         {320, 240, 104, 20, IDD_DHCP},      {240, 320, 126, 10, IDD_ADAPTER},
        {320, 240, 142, 20, IDD_ADAPTER_WIDE},
        {240, 320, 50, 10, IDD_SIGNAL}, {240, 320, 145, 10, IDD_SCANNER}, {320, 240, 161, 20, IDD_SCANNER_WIDE},
        {480, 640, 360, 36, IDD_CARD},
        // Tools not built yet: nothing.
        {240, 320, 107, 10, 0}, {240, 320, 183, 10, 0},
        {240, 320, 202, 4, 0, L"cplmain.cpl,17"}, {240, 320, 237, 20, 0, L"cplmain.cpl,19"},
        {480, 640, 404, 36, 0, L"cplmain.cpl,17"}, {480, 640, 474, 4, 0, L"cplmain.cpl,19"},
        {480, 640, 475, 4, 0},
    };
    for (auto c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << "," << c.y << " on " << c.w << "x" << c.h);
        Screen(c.w, c.h);
        g_device.dialogs.clear();
        g_device.processes.clear();
        Tap(c.x, c.y);
        ASSERT_EQ(c.tpl ? 1u : 0u, g_device.dialogs.size());
        ASSERT_EQ(c.applet ? 1u : 0u, g_device.processes.size());
        if (c.tpl) {
            EXPECT_EQ(c.tpl, LastTemplate());
            EXPECT_EQ(item_, g_device.dialogs[0].owner);
            DLGPROC proc = c.tpl == IDD_LIVEGRAPH ? (DLGPROC)LiveGraphDlgProc
                           : c.tpl == IDD_DHCP   ? (DLGPROC)DhcpDlgProc
                           : c.tpl == IDD_ADAPTER || c.tpl == IDD_ADAPTER_WIDE ? (DLGPROC)AdapterDetailsDlgProc
                                                 : (DLGPROC)UsageDlgProc;
            if (c.tpl == IDD_SIGNAL)
                proc = SignalViewDlgProc;
            else if (c.tpl == IDD_SCANNER || c.tpl == IDD_SCANNER_WIDE)
                proc = ScannerDlgProc;
            else if (c.tpl == IDD_CARD)
                proc = CardDetailsDlgProc;
            EXPECT_EQ(proc, g_device.dialogs[0].proc);
        }
        if (c.applet) {
            EXPECT_EQ(L"\\Windows\\ctlpnl.exe", g_device.processes[0].application);
            EXPECT_EQ(c.applet, g_device.processes[0].commandLine);
        }
    }
    // A failed start is not reported, and the next tap works.
    fake::FailCall(fake::kCreateProcess, 1);
    Tap(404, 4);
    Tap(442, 4);
    EXPECT_EQ(1u, g_device.processes.size());
    EXPECT_TRUE(g_device.messageBoxes.empty());
}

TEST_F(TapTest, PositionIsReadAsTwoUnsignedHalves)
{
    CreateItem();
    SendMessageW(item_, WM_LBUTTONUP, 0, (LPARAM)0x000AFFFF);   // x 65535, not -1
    EXPECT_TRUE(g_device.dialogs.empty());
    EXPECT_EQ(0, SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(10, 10)));
    EXPECT_EQ(1u, g_device.dialogs.size());
}

} // namespace
