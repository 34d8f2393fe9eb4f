// bench_usage.cpp: what one paint of the usage dialog costs with a full month (744 records).
//
// Run by hand under Wine, with a display for the dialog itself:
//   xvfb-run -a ./wine-run.sh bench_usage.exe [rounds]
// The device is the fake one; the log file is a real file. Without a display
// only the parts that need no window are measured.
#include "tools/bench.h"
#include "charts/charts.h"
#include "charts/usage_dialog.h"
#include "item/item.h"
#include "platform/fake/fake.h"
#include "resources/resource.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>

namespace {

// The dialog's client area as a memory surface, for the painter alone.
struct Surface {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ old;
    HFONT font;
};

Surface MakeSurface(int s)
{
    Surface o;
    o.dc = CreateCompatibleDC(nullptr);
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = 215 * s;
    bi.bmiHeader.biHeight = -225 * s;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void *bits;
    o.bitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    o.old = SelectObject(o.dc, o.bitmap);
    o.font = CreateFontW(-11 * s, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    SelectObject(o.dc, o.font);
    return o;
}

void FreeSurface(Surface &o)
{
    SelectObject(o.dc, o.old);
    DeleteObject(o.bitmap);
    DeleteObject(o.font);
    DeleteDC(o.dc);
}

} // namespace

int main(int argc, char **argv)
{
    int rounds = BenchRounds(argc, argv, 300);
    BenchRoot(L"quorvane-bench-usage");
    fake::SetTime(2025, 7, 20, 12);
    if (!AttachModule(GetModuleHandleW(nullptr)))
        return 1;
    WriteFullMonth(2025, 7, [](int, int day, int hour, TrafficLogRecord *r) {
        r->received = 45000u * (hour + 1) + 1000u * day;
        r->transmitted = 12000u * (day + 1);
    });

    g_usage.year = 2025;
    g_usage.month = 7;
    g_usage.day = 20;
    g_usage.mode = USAGE_DAILY;
    g_usage.view = USAGE_VIEW_CHART;
    g_usage.page = 0;
    Measure("read the month (ReadTrafficLog, 744 records)", rounds, [] { ReadUsageLog(); });
    printf("  slots %d, rows with data %d, maximum %.0f bytes\n", g_usage.slots, g_usage.rowsWithData,
           g_usage.maximum);

    for (int s = 1; s <= 2; s++) {
        fake::SetScreen(240 * s, 320 * s);
        IsLandscape();
        Surface o = MakeSurface(s);
        char what[64];
        for (int view = USAGE_VIEW_CHART; view <= USAGE_VIEW_TABLE; view++) {
            snprintf(what, sizeof what, "paint %s, %s (memory DC)", view == USAGE_VIEW_CHART ? "chart" : "table",
                     s == 2 ? "hi-res" : "normal");
            Measure(what, rounds, [&] {
                PaintUsageChart(o.dc, g_usage.mode, view, g_usage.rowsWithData, 0, g_usage.transmitted,
                                g_usage.received, g_usage.maximum, g_usage.slots);
                GdiFlush();
            });
        }
        snprintf(what, sizeof what, "read + paint chart, %s (memory DC)", s == 2 ? "hi-res" : "normal");
        Measure(what, rounds, [&] {
            ReadUsageLog();
            PaintUsageChart(o.dc, g_usage.mode, g_usage.view, g_usage.rowsWithData, 0, g_usage.transmitted,
                            g_usage.received, g_usage.maximum, g_usage.slots);
            GdiFlush();
        });
        FreeSurface(o);
    }

    // The whole WM_PAINT of the shown dialog: title, read, count, painter.
    fake::SetScreen(240, 320);
    IsLandscape();
    HINSTANCE instance = GetModuleHandleW(nullptr);
    HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(IDD_USAGE), RT_DIALOG);
    auto tpl = static_cast<LPCDLGTEMPLATEW>(LockResource(LoadResource(instance, found)));
    HWND dialog = CreateDialogIndirectParamW(instance, tpl, nullptr, UsageDlgProc, 0);
    if (dialog) {
        g_usage.year = 2025;
        g_usage.month = 7;
        g_usage.day = 20;
        ShowWindow(dialog, SW_SHOWNA);
        UpdateWindow(dialog);
        Measure("dialog WM_PAINT, chart, normal (whole)", rounds, [&] {
            InvalidateRect(dialog, nullptr, TRUE);
            UpdateWindow(dialog);
            GdiFlush();
        });
        DestroyWindow(dialog);
    } else {
        printf("no display: the dialog's own paint was not measured\n");
    }

    WCHAR path[MAX_PATH];
    TrafficLogPath(2025, 7, path);
    DeleteFileW(path);
    ClearCache(nullptr);
    DetachModule();
    return 0;
}
