// taps_test.cpp: the strip's hit test, the landscape templates and what a tap launches.
#include "tests/support.h"

#include "charts/charts.h"
#include "diagnostics/diagnostics.h"
#include "item/strip.h"
#include "resources/resource.h"
#include "wireless/tools.h"

using fake::g_device;

namespace {

using TapTest = DeviceTest;

TEST_F(TapTest, IconRowAndGraphBoxesIncludeTheirBounds)
{
    // The icon row in test order, at s = 1; x is scaled, the row's top (4) is not.
    const int ranges[][3] = {{50, 66, kTargetSignal},      {145, 161, kTargetScanner},   {164, 180, kTargetCard},
                             {69, 85, kTargetUsage},       {88, 104, kTargetDhcp},       {107, 123, kTargetPing},
                             {183, 199, kTargetIntruder},  {202, 218, kTargetApplet17},  {221, 237, kTargetApplet19},
                             {126, 142, kTargetAdapter}};
    // The graph's two boxes are fixed, not one derived from the other: {left, top, right, bottom}.
    const int graph[2][4] = {{3, 1, 47, 23}, {3, 3, 91, 36}};
    for (int s : {1, 2}) {
        fake::SetScreen(240 * s, 320 * s);
        IsLandscape();
        int bottom = 16 * s + 4;
        for (auto r : ranges) {
            SCOPED_TRACE(testing::Message() << r[0] << ".." << r[1] << " s " << s);
            EXPECT_TRUE(HitTestIconRow(r[0] * s, 4) == r[2] && HitTestIconRow(r[1] * s, bottom) == r[2]);
            EXPECT_TRUE(HitTestIconRow(r[0] * s - 1, 10) == kTargetNone && HitTestIconRow(r[1] * s + 1, 10) == kTargetNone);
            EXPECT_TRUE(HitTestIconRow(r[0] * s, 3) == kTargetNone && HitTestIconRow(r[0] * s, bottom + 1) == kTargetNone);
        }
        const int *g = graph[s - 1];
        EXPECT_TRUE(HitTestGraph(g[0], g[1]) && HitTestGraph(g[2], g[3])) << s;
        EXPECT_FALSE(HitTestGraph(g[0] - 1, 10) || HitTestGraph(g[2] + 1, 10)) << s;
        EXPECT_FALSE(HitTestGraph(10, g[1] - 1) || HitTestGraph(10, g[3] + 1)) << s;
    }
}

TEST_F(TapTest, EachTapOpensItsDialogOrApplet)
{
    CreateItem();
    // The others are tapped end to end. tpl 0: no dialog.
    const struct { int w, h, x, y, tpl; DLGPROC proc; const wchar_t *applet; } cases[] = {
        {480, 640, 475, 4, 0},                               {480, 480, 138, 36, IDD_USAGE_WIDE, UsageDlgProc},
        {240, 320, 107, 10, IDD_PING, PingDlgProc},          {320, 240, 123, 20, IDD_PING_WIDE, PingDlgProc},
        {240, 320, 145, 10, IDD_SCANNER, ScannerDlgProc},    {640, 480, 398, 4, IDD_INTRUDER, IntruderDlgProc},
        {240, 320, 202, 4, 0, nullptr, L"cplmain.cpl,17"},   {480, 640, 474, 4, 0, nullptr, L"cplmain.cpl,19"},
    };
    for (auto c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << "," << c.y << " on " << c.w << "x" << c.h);
        fake::SetScreen(c.w, c.h);
        IsLandscape();
        g_device.dialogs.clear();
        g_device.processes.clear();
        EXPECT_EQ(0, SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(c.x, c.y)));
        ASSERT_TRUE(g_device.dialogs.size() == (c.tpl ? 1u : 0u) && g_device.processes.size() == (c.applet ? 1u : 0u));
        if (c.tpl) {
            EXPECT_EQ(c.tpl, fake::TemplateId(GetModuleHandleW(nullptr), g_device.dialogs[0].dialogTemplate));
            EXPECT_TRUE(item_ == g_device.dialogs[0].owner && c.proc == g_device.dialogs[0].proc);
        }
        EXPECT_TRUE(!c.applet || (g_device.processes[0].application == L"\\Windows\\ctlpnl.exe" &&
                                  g_device.processes[0].commandLine == c.applet));
    }
    // A failed start is not reported, and the next tap works.
    g_device.processes.clear();
    fake::FailCall(fake::kCreateProcess, 1);
    SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(404, 4));
    SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(442, 4));
    EXPECT_TRUE(g_device.processes.size() == 1 && g_device.messageBoxes.empty());

    // Only the four with a landscape template read the screen again: a turn is seen by usage, not by DHCP.
    fake::SetScreen(240, 320);
    IsLandscape();
    fake::SetScreen(320, 240);
    SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(90, 10));
    EXPECT_EQ(240, g_item.screenWidth);
    SendMessageW(item_, WM_LBUTTONUP, 0, MAKELPARAM(70, 10));
    EXPECT_EQ(320, g_item.screenWidth);
}

TEST(TapPosition, XIsTheLowHalfAndYTheHighOneEachUnsigned)
{
    POINT at = TapPoint((LPARAM)0xFFFE0001);
    EXPECT_TRUE(at.x == 1 && at.y == 65534) << at.x << "," << at.y;
    at = TapPoint((LPARAM)0x0002FFFF);
    EXPECT_TRUE(at.x == 65535 && at.y == 2) << at.x << "," << at.y;
}

} // namespace
