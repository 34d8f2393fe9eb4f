// taps.cpp: the strip's hit test and the tools it opens.
#include "platform/text.h"
#include "item/item.h"
#include "item/strip.h"
#include "platform/platform.h"
#include "resources/resource.h"
#include "charts/charts.h"
#include "adapters/adapters.h"
#include "diagnostics/diagnostics.h"
#include "wireless/tools.h"

namespace {

// Everything a tap can open, in one place: the icon row's range (at s = 1, both
// bounds included; none for the graph), the templates, the dialog procedure or
// the control-panel applet. A tool whose procedure is not built opens nothing.
struct Target {
    int target;
    int left, right;
    int portrait, landscape;     // landscape 0: one template only
    DLGPROC proc;
    LPCWSTR applet;
};

const Target kTargets[] = {
    {kTargetSignal, 50, 66, IDD_SIGNAL, 0, SignalViewDlgProc, nullptr},
    {kTargetScanner, 145, 161, IDD_SCANNER, IDD_SCANNER_WIDE, ScannerDlgProc, nullptr},
    {kTargetCard, 164, 180, IDD_CARD, 0, CardDetailsDlgProc, nullptr},
    {kTargetUsage, 69, 85, IDD_USAGE, IDD_USAGE_WIDE, UsageDlgProc, nullptr},
    {kTargetDhcp, 88, 104, IDD_DHCP, 0, DhcpDlgProc, nullptr},
    {kTargetPing, 107, 123, IDD_PING, IDD_PING_WIDE, PingDlgProc, nullptr},
    {kTargetIntruder, 183, 199, IDD_INTRUDER, 0, IntruderDlgProc, nullptr},
    {kTargetApplet17, 202, 218, 0, 0, nullptr, L"cplmain.cpl,17"},
    {kTargetApplet19, 221, 237, 0, 0, nullptr, L"cplmain.cpl,19"},
    {kTargetAdapter, 126, 142, IDD_ADAPTER, IDD_ADAPTER_WIDE, AdapterDetailsDlgProc, nullptr},
    {kTargetLiveGraph, -1, -1, IDD_LIVEGRAPH, 0, LiveGraphDlgProc, nullptr},
};

const Target *FindTarget(int target)
{
    for (size_t i = 0; i < sizeof kTargets / sizeof kTargets[0]; i++)
        if (kTargets[i].target == target)
            return &kTargets[i];
    return nullptr;
}

int Scale()
{
    return IsHiResScreen() ? 2 : 1;
}

} // namespace

int HitTestIconRow(int x, int y)
{
    int s = Scale();
    // The row's top is not scaled; its bottom is.
    if (y < STRIP_ICON_Y || y > STRIP_ICON_SIZE * s + STRIP_ICON_Y)
        return kTargetNone;
    for (size_t i = 0; i < sizeof kTargets / sizeof kTargets[0]; i++) {
        const Target &t = kTargets[i];
        if (t.left >= 0 && x >= t.left * s && x <= t.right * s)
            return t.target;
    }
    return kTargetNone;
}

bool HitTestGraph(int x, int y)
{
    // Two fixed boxes; the hi-res one is not the normal one doubled.
    if (IsHiResScreen())
        return y >= 3 && y <= 36 && x >= 3 && x <= 91;
    return y >= 1 && y <= 23 && x >= 3 && x <= 47;
}

int TargetTemplate(int target)
{
    const Target *t = FindTarget(target);
    if (!t || t->applet)
        return 0;
    if (t->landscape && IsLandscape())
        return t->landscape;
    return t->portrait;
}

void OpenTarget(HWND window, int target)
{
    const Target *t = FindTarget(target);
    if (!t)
        return;
    if (t->applet) {
        WCHAR commandLine[32];
        CopyText(commandLine, t->applet, 32);
        platform::CreateProcessW(L"\\Windows\\ctlpnl.exe", commandLine);
        return;
    }
    int id = TargetTemplate(target);
    if (!t->proc)
        return;
    HRSRC resource = FindResourceW(g_item.instance, MAKEINTRESOURCEW(id), RT_DIALOG);
    if (!resource)
        return;
    HGLOBAL loaded = LoadResource(g_item.instance, resource);
    LPCDLGTEMPLATE dialogTemplate = loaded ? static_cast<LPCDLGTEMPLATE>(LockResource(loaded)) : nullptr;
    if (!dialogTemplate)
        return;
    platform::DialogBoxIndirectParamW(g_item.instance, dialogTemplate, window, t->proc, 0);
}

POINT TapPoint(LPARAM position)
{
    POINT at = {LOWORD(position), HIWORD(position)};
    return at;
}

void OnTap(HWND window, LPARAM position)
{
    POINT at = TapPoint(position);
    int target = HitTestIconRow(at.x, at.y);
    if (target != kTargetNone)
        OpenTarget(window, target);
    if (HitTestGraph(at.x, at.y))
        OpenTarget(window, kTargetLiveGraph);
}
