// todayhost.cpp: a desktop Today screen that loads quorvane.dll and plays the device around it.
#include <windows.h>
#include <shellapi.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

#include <vector>

#include "host/png.h"
#include "platform/screen.h"
#include "platform/today.h"

namespace {

const UINT kRefreshTimer = 1, kEndTimer = 2, kTapTimer = 3, kOptionsTimer = 4;
const UINT kRefreshMs = 2000;
const int kMenuOptions = 100, kMenuExit = 101;

struct Tap {
    int x, y;
};

struct Host {
    int width = 240, height = 320;
    bool enabled = true;
    bool options = false;
    int seconds = 0;              // 0: run until closed
    int ticks = 0;
    std::vector<Tap> taps;
    size_t nextTap = 0;
    wchar_t dll[MAX_PATH] = L"";
    wchar_t screenshot[MAX_PATH] = L"";

    HINSTANCE instance = nullptr;
    HWND frame = nullptr, screen = nullptr, taskbar = nullptr, today = nullptr;
    HMODULE module = nullptr;
    HWND item = nullptr;
    TODAYLISTITEM tli = {};
    int refreshes = 0;
    int clockMinute = -1;
    bool ending = false;
} g;

int Scale()
{
    return (g.width > 320 || g.height > 320) ? 2 : 1;
}

int TaskbarHeight()
{
    return 26 * Scale();
}

int DateHeight()
{
    return 22 * Scale();
}

// The Today background: a soft vertical gradient with a faint diagonal
// watermark, painted for any rectangle given in Today-window coordinates.
void PaintBackground(HDC dc, const RECT &target, int originX, int originY)
{
    RECT todayRect;
    GetClientRect(g.today, &todayRect);
    int h = todayRect.bottom > 0 ? todayRect.bottom : 1;
    for (int y = target.top; y < target.bottom; y++) {
        int ty = y + originY;
        int t = ty * 255 / h;
        if (t < 0)
            t = 0;
        if (t > 255)
            t = 255;
        for (int x = target.left; x < target.right; x++) {
            int tx = x + originX;
            int r = 236 - t / 10, gr = 243 - t / 14, b = 252 - t / 30;
            if (((tx + ty) / (6 * Scale())) % 9 == 0) {   // the watermark's stripes
                r -= 6;
                gr -= 5;
                b -= 2;
            }
            SetPixelV(dc, x, y, RGB(r, gr, b));
        }
    }
}

void PaintBackgroundFast(HDC dc, const RECT &target, int originX, int originY)
{
    int w = target.right - target.left, h = target.bottom - target.top;
    if (w <= 0 || h <= 0)
        return;
    HDC memory = CreateCompatibleDC(dc);
    HBITMAP bitmap = CreateCompatibleBitmap(dc, w, h);
    HGDIOBJ old = SelectObject(memory, bitmap);
    RECT local = {0, 0, w, h};
    PaintBackground(memory, local, originX + target.left, originY + target.top);
    BitBlt(dc, target.left, target.top, w, h, memory, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
}

HFONT MakeFont(int height, int weight)
{
    return CreateFontW(-height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
}

void LayoutToday()
{
    if (g.item)
        SetWindowPos(g.item, nullptr, 0, DateHeight(), g.width, g.tli.cyp, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(g.today, nullptr, TRUE);
}

// As the Today screen does: ask the item whether it needs a refresh, and lay
// the screen out again (then ask once more) while it answers TRUE.
void RefreshItem()
{
    if (!g.item)
        return;
    for (int i = 0; i < 3; i++) {
        if (!SendMessageW(g.item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&g.tli))
            break;
        LayoutToday();
        UpdateWindow(g.today);
    }
}

void TakeScreenshot()
{
    if (!g.screenshot[0])
        return;
    RECT rc;
    GetWindowRect(g.screen, &rc);
    int w = rc.right - rc.left, h = rc.bottom - rc.top;
    HDC desktop = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(desktop);
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    HBITMAP dib = CreateDIBSection(desktop, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, dib);
    // From the desktop, so that a dialog open on top is in the picture.
    BitBlt(memory, 0, 0, w, h, desktop, rc.left, rc.top, SRCCOPY);
    GdiFlush();
    if (!WriteImageFile(g.screenshot, w, h, static_cast<unsigned char *>(bits)))
        fwprintf(stderr, L"todayhost: cannot write %ls\n", g.screenshot);
    SelectObject(memory, old);
    DeleteObject(dib);
    DeleteDC(memory);
    ReleaseDC(nullptr, desktop);
}

BOOL CALLBACK EndDialogsOfThread(HWND window, LPARAM)
{
    wchar_t cls[16];
    if (GetClassNameW(window, cls, 16) && wcscmp(cls, L"#32770") == 0)
        EndDialog(window, IDCANCEL);
    return TRUE;
}

// Ends the run: the picture first, then any tool dialog still open, then the loop.
void EndRun()
{
    if (g.ending)
        return;
    g.ending = true;
    TakeScreenshot();
    EnumThreadWindows(GetCurrentThreadId(), EndDialogsOfThread, 0);
    PostQuitMessage(0);
}

void RunOptions()
{
    if (!g.module)
        return;
    DLGPROC proc = (DLGPROC)GetProcAddress(g.module, MAKEINTRESOURCEA(ORDINAL_CUSTOMITEMOPTIONSDLGPROC));
    if (!proc)
        return;
    // The Today settings' own dialog, which the item turns into its options sheet.
    struct {
        DLGTEMPLATE t;
        WORD menu, cls, title[9];
    } tpl = {};
    tpl.t.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    tpl.t.cx = (short)(g.width * 4 / 6);
    tpl.t.cy = (short)(g.height * 8 / 13);
    memcpy(tpl.title, L"Settings", sizeof(L"Settings"));
    DialogBoxIndirectParamW(g.instance, &tpl.t, g.screen, proc, 0);
}

LRESULT CALLBACK TaskbarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_PAINT) {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(window, &ps);
        RECT rc;
        GetClientRect(window, &rc);
        HBRUSH bar = CreateSolidBrush(RGB(16, 52, 120));
        FillRect(dc, &rc, bar);
        DeleteObject(bar);
        int s = Scale();
        HFONT font = MakeFont(12 * s, FW_BOLD);
        HGDIOBJ oldFont = SelectObject(dc, font);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(255, 255, 255));
        // The start flag, four panes, as the device's taskbar shows it; no
        // text, so the item's taskbar icon at XLocation has room.
        static const COLORREF panes[4] = {RGB(230, 60, 40), RGB(90, 180, 60), RGB(40, 120, 230),
                                          RGB(250, 200, 40)};
        int pane = 7 * s, gap = s, top = (rc.bottom - 2 * pane - gap) / 2;
        for (int i = 0; i < 4; i++) {
            RECT r = {6 * s + (i % 2) * (pane + gap), top + (i / 2) * (pane + gap), 0, 0};
            r.right = r.left + pane;
            r.bottom = r.top + pane;
            HBRUSH b = CreateSolidBrush(panes[i]);
            FillRect(dc, &r, b);
            DeleteObject(b);
        }
        SYSTEMTIME now;
        GetLocalTime(&now);
        wchar_t clock[16];
        swprintf(clock, 16, L"%d:%02d", now.wHour % 12 ? now.wHour % 12 : 12, now.wMinute);
        RECT right = {rc.right - 70 * s, 0, rc.right - 6 * s, rc.bottom};
        DrawTextW(dc, clock, -1, &right, DT_SINGLELINE | DT_VCENTER | DT_RIGHT);
        SelectObject(dc, oldFont);
        DeleteObject(font);
        EndPaint(window, &ps);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK TodayProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_ERASEBKGND: {
        RECT rc;
        GetClientRect(window, &rc);
        PaintBackgroundFast((HDC)wParam, rc, 0, 0);
        return 1;
    }
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(window, &ps);
        int s = Scale();
        HFONT font = MakeFont(11 * s, FW_BOLD);
        HGDIOBJ old = SelectObject(dc, font);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(16, 52, 120));
        SYSTEMTIME now;
        GetLocalTime(&now);
        wchar_t date[64];
        GetDateFormatW(LOCALE_USER_DEFAULT, DATE_LONGDATE, &now, nullptr, date, 64);
        RECT line = {6 * s, 0, g.width, DateHeight()};
        DrawTextW(dc, date, -1, &line, DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_NOPREFIX);
        SelectObject(dc, old);
        DeleteObject(font);
        HPEN pen = CreatePen(PS_SOLID, 1, RGB(16, 52, 120));
        HGDIOBJ oldPen = SelectObject(dc, pen);
        MoveToEx(dc, 0, DateHeight() - 1, nullptr);
        LineTo(dc, g.width, DateHeight() - 1);
        SelectObject(dc, oldPen);
        DeleteObject(pen);
        EndPaint(window, &ps);
        return 0;
    }
    case TODAYM_DRAWWATERMARK: {
        TODAYDRAWWATERMARKINFO *info = (TODAYDRAWWATERMARKINFO *)lParam;
        if (!info || !info->hdc)
            return 0;
        POINT origin = {0, 0};
        if (info->hwnd)
            MapWindowPoints(info->hwnd, window, &origin, 1);
        PaintBackgroundFast(info->hdc, info->rc, origin.x, origin.y);
        return 1;
    }
    case WM_TIMER:
        if (wParam == kRefreshTimer) {
            // The taskbar's clock turns over once a minute, repainting the
            // taskbar under the item's status icon as the device's does.
            SYSTEMTIME now;
            GetLocalTime(&now);
            if (now.wMinute != g.clockMinute) {
                g.clockMinute = now.wMinute;
                InvalidateRect(g.taskbar, nullptr, FALSE);
            }
            RefreshItem();
            g.refreshes++;
            if (g.ticks && g.refreshes >= g.ticks)
                EndRun();
        } else if (wParam == kEndTimer) {
            KillTimer(window, kEndTimer);
            EndRun();
        } else if (wParam == kTapTimer) {
            if (g.nextTap >= g.taps.size()) {
                KillTimer(window, kTapTimer);
            } else if (g.item) {
                Tap t = g.taps[g.nextTap++];
                PostMessageW(g.item, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(t.x, t.y));
                PostMessageW(g.item, WM_LBUTTONUP, 0, MAKELPARAM(t.x, t.y));
            }
        } else if (wParam == kOptionsTimer) {
            KillTimer(window, kOptionsTimer);
            RunOptions();
        }
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK ScreenProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == kMenuOptions)
            RunOptions();
        else if (LOWORD(wParam) == kMenuExit)
            EndRun();
        return 0;
    case WM_CLOSE:
        EndRun();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void Usage(const wchar_t *argument)
{
    if (argument)
        fwprintf(stderr, L"todayhost: cannot use the option %ls\n", argument);
    fwprintf(stderr,
             L"usage: todayhost [--screen WxH] [--dll PATH] [--disabled] [--options]\n"
             L"                 [--seconds N | --ticks N] [--tap X,Y]... [--screenshot FILE.png|.bmp]\n");
}

bool ParseArgs()
{
    int argc = 0;
    wchar_t **argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    for (int i = 1; i < argc; i++) {
        const wchar_t *a = argv[i];
        const wchar_t *v = i + 1 < argc ? argv[i + 1] : nullptr;
        if (!wcscmp(a, L"--disabled")) {
            g.enabled = false;
        } else if (!wcscmp(a, L"--options")) {
            g.options = true;
        } else if (!v) {
            Usage(a);
            return false;
        } else if (!wcscmp(a, L"--screen")) {
            if (swscanf(v, L"%dx%d", &g.width, &g.height) != 2 || g.width < 100 || g.height < 100)
                return Usage(a), false;
            i++;
        } else if (!wcscmp(a, L"--dll")) {
            wcsncpy(g.dll, v, MAX_PATH - 1);
            i++;
        } else if (!wcscmp(a, L"--seconds")) {
            g.seconds = _wtoi(v);
            i++;
        } else if (!wcscmp(a, L"--ticks")) {
            g.ticks = _wtoi(v);
            i++;
        } else if (!wcscmp(a, L"--tap")) {
            Tap t;
            if (swscanf(v, L"%d,%d", &t.x, &t.y) != 2)
                return Usage(a), false;
            g.taps.push_back(t);
            i++;
        } else if (!wcscmp(a, L"--screenshot")) {
            wcsncpy(g.screenshot, v, MAX_PATH - 1);
            i++;
        } else {
            Usage(a);
            return false;
        }
    }
    LocalFree(argv);
    if (!g.dll[0]) {
        GetModuleFileNameW(nullptr, g.dll, MAX_PATH);
        wchar_t *slash = wcsrchr(g.dll, L'\\');
        wcscpy(slash ? slash + 1 : g.dll, L"quorvane.dll");
    }
    return true;
}

bool CreateWindows()
{
    WNDCLASSW wc = {};
    wc.hInstance = g.instance;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.lpfnWndProc = FrameProc;
    wc.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    wc.lpszClassName = L"QuorvaneTodayHost";
    RegisterClassW(&wc);
    wc.lpfnWndProc = ScreenProc;
    wc.hbrBackground = (HBRUSH)GetStockObject(BLACK_BRUSH);
    wc.lpszClassName = DEVICE_SCREEN_CLASS;
    RegisterClassW(&wc);
    wc.lpfnWndProc = TaskbarProc;
    wc.hbrBackground = nullptr;
    wc.lpszClassName = L"HHTaskBar";
    RegisterClassW(&wc);
    wc.lpfnWndProc = TodayProc;
    wc.lpszClassName = L"QuorvaneTodayScreen";
    RegisterClassW(&wc);

    HMENU menu = CreateMenu();
    AppendMenuW(menu, MF_STRING, kMenuOptions, L"&Options...");
    AppendMenuW(menu, MF_STRING, kMenuExit, L"E&xit");
    DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    RECT rc = {0, 0, g.width, g.height};
    AdjustWindowRect(&rc, style, TRUE);
    g.frame = CreateWindowExW(0, L"QuorvaneTodayHost", L"Quorvane - Today", style, 0, 0,
                              rc.right - rc.left, rc.bottom - rc.top, nullptr, menu, g.instance, nullptr);
    if (!g.frame)
        return false;
    // Like a real screen the device screen does not clip its children: the
    // item paints its taskbar icon straight over the taskbar.
    g.screen = CreateWindowExW(0, DEVICE_SCREEN_CLASS, L"", WS_CHILD | WS_VISIBLE, 0, 0, g.width, g.height,
                               g.frame, nullptr, g.instance, nullptr);
    g.taskbar = CreateWindowExW(0, L"HHTaskBar", L"", WS_CHILD | WS_VISIBLE, 0, 0, g.width, TaskbarHeight(),
                                g.screen, nullptr, g.instance, nullptr);
    g.today = CreateWindowExW(0, L"QuorvaneTodayScreen", L"Today", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0,
                              TaskbarHeight(), g.width, g.height - TaskbarHeight(), g.screen, nullptr,
                              g.instance, nullptr);
    return g.screen && g.taskbar && g.today;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show)
{
    g.instance = instance;
    if (!ParseArgs())
        return 2;
    if (!CreateWindows()) {
        fwprintf(stderr,
                 L"todayhost: cannot create its windows (error %lu). Wine needs a display: run it\n"
                 L"  under X, or headless as `xvfb-run -a ./dev.sh run`. If this Wine prefix was\n"
                 L"  first started without a display, it cannot make windows until its wineserver\n"
                 L"  restarts: run `WINEPREFIX=<the prefix> wineserver -k`, then try again.\n",
                 GetLastError());
        return 3;
    }
    ShowWindow(g.frame, show ? show : SW_SHOW);
    UpdateWindow(g.frame);

    g.module = LoadLibraryW(g.dll);
    if (!g.module) {
        fwprintf(stderr, L"todayhost: cannot load %ls (error %lu)\n", g.dll, GetLastError());
        return 4;
    }
    auto init = (PFNCUSTOMINITITEM)GetProcAddress(g.module, MAKEINTRESOURCEA(ORDINAL_INITIALIZECUSTOMITEM));
    if (!init) {
        fwprintf(stderr, L"todayhost: %ls has no ordinal 240\n", g.dll);
        return 5;
    }
    wcscpy(g.tli.szName, L"Quorvane");
    g.tli.tlit = tlitCustom;
    g.tli.fEnabled = g.enabled;
    g.tli.fOptions = TRUE;
    wcsncpy(g.tli.szDLLPath, g.dll, MAX_PATH - 1);
    g.tli.hinstDLL = g.module;
    g.item = init(&g.tli, g.today);
    g.tli.hwndCustom = g.item;
    RefreshItem();

    SetTimer(g.today, kRefreshTimer, kRefreshMs, nullptr);
    if (g.seconds > 0)
        SetTimer(g.today, kEndTimer, g.seconds * 1000, nullptr);
    if (!g.taps.empty())
        SetTimer(g.today, kTapTimer, 1000, nullptr);
    if (g.options)
        SetTimer(g.today, kOptionsTimer, 500, nullptr);

    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }

    if (g.item) {
        SendMessageW(g.item, WM_TODAYCUSTOM_CLEARCACHE, 0, (LPARAM)&g.tli);
        DestroyWindow(g.item);
    }
    FreeLibrary(g.module);
    DestroyWindow(g.frame);
    return 0;
}
