// taps_test.cpp: the strip's hit test, the landscape templates and what a tap launches.
#include "tests/support.h"

#include "adapters/adapters.h"
#include "charts/charts.h"
#include "diagnostics/diagnostics.h"
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
        {kTargetSignal, IDD_SIGNAL, IDD_SIGNAL},   {kTargetLiveGraph, IDD_LIVEGRAPH, IDD_LIVEGRAPH},
        {kTargetApplet17, 0, 0},
    };
    struct {
        int w, h;
        bool wide;
    } screens[] = {{240, 320, false}, {320, 240, true}, {480, 480, true}};
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
        {240, 320, 107, 10, IDD_PING},        {320, 240, 123, 20, IDD_PING_WIDE}, {480, 480, 214, 36, IDD_PING_WIDE},
        {240, 320, 183, 10, IDD_INTRUDER},    {640, 480, 398, 4, IDD_INTRUDER},
        {240, 320, 50, 10, IDD_SIGNAL}, {240, 320, 145, 10, IDD_SCANNER}, {320, 240, 161, 20, IDD_SCANNER_WIDE},
        {480, 640, 360, 36, IDD_CARD},
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
            const struct { int tpl; DLGPROC proc; } procs[] = {
                {IDD_LIVEGRAPH, LiveGraphDlgProc}, {IDD_USAGE, UsageDlgProc}, {IDD_USAGE_WIDE, UsageDlgProc},
                {IDD_DHCP, DhcpDlgProc}, {IDD_ADAPTER, AdapterDetailsDlgProc},
                {IDD_ADAPTER_WIDE, AdapterDetailsDlgProc}, {IDD_PING, PingDlgProc}, {IDD_PING_WIDE, PingDlgProc},
                {IDD_INTRUDER, IntruderDlgProc}, {IDD_SIGNAL, SignalViewDlgProc}, {IDD_SCANNER, ScannerDlgProc},
                {IDD_SCANNER_WIDE, ScannerDlgProc}, {IDD_CARD, CardDetailsDlgProc},
            };
            DLGPROC proc = nullptr;
            for (auto &p : procs)
                if (p.tpl == c.tpl)
                    proc = p.proc;
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

TEST_F(TapTest, PositionIsXInTheLowHalfAndYInTheHighHalf)
{
    // Every 16-bit value past the strip misses signed or unsigned alike; what
    // a tap can tell is which half is which and that neither spills into the
    // other.
    CreateItem();
    const struct { LPARAM position; size_t dialogs; } cases[] = {
        {MAKELPARAM(30, 2), 1}, {MAKELPARAM(2, 30), 0}, {(LPARAM)0x0002FFFF, 0}, {(LPARAM)0xFFFF001E, 0}};
    for (auto c : cases) {
        g_device.dialogs.clear();
        EXPECT_EQ(0, SendMessageW(item_, WM_LBUTTONUP, 0, c.position));
        EXPECT_EQ(c.dialogs, g_device.dialogs.size()) << std::hex << c.position;
    }
}

} // namespace
