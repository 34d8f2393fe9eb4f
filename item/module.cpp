// module.cpp: attach and detach, the item window and its cache messages.
#include "platform/text.h"
#include "item/item.h"
#include "platform/platform.h"
#include "wireless/wireless.h"

#include <commctrl.h>
#include <shlobj.h>

ItemState g_item;

static const WCHAR kDefaultSubfolder1[] = L"\\Ostrik";
static const WCHAR kDefaultSubfolder2[] = L"\\Quorvane";

bool IsHiResScreen()
{
    return g_item.screenWidth > 320 || g_item.screenHeight > 320;
}

bool IsLandscape()
{
    g_item.screenWidth = platform::GetSystemMetrics(SM_CXSCREEN);
    g_item.screenHeight = platform::GetSystemMetrics(SM_CYSCREEN);
    return g_item.screenWidth >= g_item.screenHeight;
}

void PlaceToolDialog(HWND dialog, bool belowTaskbar)
{
    IsLandscape();   // the screen may have turned since the item last looked
    RECT rc;
    GetWindowRect(dialog, &rc);
    int w = rc.right - rc.left + 1, h = rc.bottom - rc.top + 1;
    int x = (g_item.screenWidth - w) / 2, y = (g_item.screenHeight - h) / 2;
    if (belowTaskbar) {
        int top = 26;
        HWND taskbar = platform::FindWindowW(L"HHTaskBar", nullptr);
        RECT bar;
        if (taskbar && GetWindowRect(taskbar, &bar))
            top = bar.bottom - bar.top + 1;
        if (y < top)
            y = top;
    }
    MoveWindow(dialog, x, y, w, h, FALSE);
}

static int Scale()
{
    return IsHiResScreen() ? 2 : 1;
}

// The clean screen under the taskbar icon, put back when the cache is cleared.
void CaptureTaskbarBackground()
{
    int s = Scale(), side = 16 * s;
    HDC screen = platform::GetDC(nullptr);
    if (!screen)
        return;
    HDC memory = platform::CreateCompatibleDC(screen);
    HBITMAP bitmap = platform::CreateCompatibleBitmap(screen, side, side);
    if (memory && bitmap) {
        HGDIOBJ old = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, side, side, screen, (int)g_item.xLocation, 5 * s, SRCCOPY);
        SelectObject(memory, old);
        g_item.taskbarBackground = bitmap;
    } else if (bitmap) {
        DeleteObject(bitmap);
    }
    if (memory)
        DeleteDC(memory);
    platform::ReleaseDC(nullptr, screen);
}

static void CreatePens()
{
    if (!g_item.redPen)
        g_item.redPen = platform::CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
    if (!g_item.bluePen)
        g_item.bluePen = platform::CreatePen(PS_SOLID, 1, RGB(0, 0, 255));
    if (!g_item.silverPen)
        g_item.silverPen = platform::CreatePen(PS_SOLID, 1, RGB(192, 192, 192));
}

// The default log folder is the platform's Program Files folder (on the
// device that is "\Program Files") plus Ostrik\Quorvane.
static void UseDefaultDataFolder()
{
    WCHAR base[MAX_PATH];
    if (!platform::SHGetSpecialFolderPathW(nullptr, base, CSIDL_PROGRAM_FILES, FALSE))
        lstrcpyW(base, L"\\Program Files");
    WCHAR folder[MAX_PATH + 32];
    wsprintfW(folder, L"%s%s", base, kDefaultSubfolder1);
    CreateDirectoryW(folder, nullptr);
    lstrcatW(folder, kDefaultSubfolder2);
    CreateDirectoryW(folder, nullptr);
    CopyText(g_item.dataFolder, folder, 260);
}

void InitializeItemState()
{
    HINSTANCE instance = g_item.instance;
    ZeroMemory(&g_item, sizeof g_item);
    ZeroMemory(&g_settings, sizeof g_settings);
    g_item.instance = instance;

    g_item.sampleCount = g_item.ringIndex = g_item.ringStart = -1;
    g_item.signalDbm = g_item.lastDrawnSignal = NO_SIGNAL;
    g_item.interfaceIndex = UNKNOWN_INTERFACE;
    for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
        g_item.signalHistory[i] = NO_SIGNAL;

    g_item.screenWidth = platform::GetSystemMetrics(SM_CXSCREEN);
    g_item.screenHeight = platform::GetSystemMetrics(SM_CYSCREEN);

    if (ReadSettingString(L"Adapter", g_settings.Adapter, sizeof g_settings.Adapter)) {
        CopyText(g_item.adapterName, g_settings.Adapter, 128);
    } else if (ChooseAdapter() && g_item.adapterName[0]) {
        CopyText(g_settings.Adapter, g_item.adapterName, 128);
        WriteSettingString(L"Adapter", g_settings.Adapter);
    }

    if (ReadSettingString(L"InstallDir", g_settings.InstallDir, sizeof g_settings.InstallDir))
        CopyText(g_item.dataFolder, g_settings.InstallDir, 260);
    else
        UseDefaultDataFolder();

    CreatePens();

    DWORD v;
    if (!ReadSettingDword(L"XLocation", &v)) {
        v = 75;
        WriteSettingDword(L"XLocation", v);
    } else if (v > 639) {
        v = 639;
        WriteSettingDword(L"XLocation", v);
    }
    g_settings.XLocation = g_item.xLocation = v;

    if (!ReadSettingDword(L"TIcon", &v)) {
        v = 1;
        WriteSettingDword(L"TIcon", v);
    }
    g_settings.TIcon = v;
    g_item.showTaskbarIcon = v != 0;

    if (!ReadSettingDword(L"TFormat", &v)) {
        v = 1;
        WriteSettingDword(L"TFormat", v);
    }
    g_settings.TFormat = v;
    g_item.amPmFormat = v != 0;

    CaptureTaskbarBackground();
    g_item.signalTiming = false;
    WirelessLostValue = 0xFFFFFFFF;
}

BOOL AttachModule(HINSTANCE instance)
{
    g_item.instance = instance;
    UnregisterClassW(QUORVANE_CLASS, instance);

    WNDCLASSW wc = {};
    wc.style = CS_HREDRAW | CS_VREDRAW;
    wc.lpfnWndProc = ItemWindowProc;
    wc.hInstance = instance;
    wc.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
    wc.lpszClassName = QUORVANE_CLASS;
    if (!RegisterClassW(&wc)) {
        platform::MessageBoxW(nullptr, L"RegisterClass() failed", L"Error! - quorvane.dll",
                              MB_ICONEXCLAMATION);
        return FALSE;
    }

    INITCOMMONCONTROLSEX icc = {sizeof icc, ICC_DATE_CLASSES};
    InitCommonControlsEx(&icc);
    InitializeItemState();
    return TRUE;
}

void DetachModule()
{
    UnregisterClassW(QUORVANE_CLASS, g_item.instance);
}

extern "C" HWND WINAPI InitializeCustomItem(TODAYLISTITEM *item, HWND parent)
{
    if (!item || !item->fEnabled)
        return nullptr;
    return CreateWindowExW(0, QUORVANE_CLASS, L"Quorvane", WS_CHILD | WS_VISIBLE, 0, 0, 240, 0,
                           parent, nullptr, g_item.instance, nullptr);
}

LRESULT QueryRefreshCache(HWND window, TODAYLISTITEM *item)
{
    if (!item)
        return FALSE;
    DWORD height = IsHiResScreen() ? 40 : 24;
    if (item->cyp != height) {
        item->cyp = height;
        return TRUE;
    }

    HDC dc = GetDC(window);
    if (!g_item.gdiReady) {
        // Both or neither: half a surface would be made again at every
        // refresh, losing a handle each time GDI is short.
        int s = Scale();
        HDC surface = platform::CreateCompatibleDC(dc);
        HBITMAP bitmap = surface ? platform::CreateCompatibleBitmap(dc, 44 * s, 22 * s) : nullptr;
        if (bitmap) {
            g_item.surfaceDC = surface;
            g_item.surfaceBitmap = bitmap;
            g_item.surfaceOldBitmap = SelectObject(surface, bitmap);
            g_item.gdiReady = true;
        } else if (surface) {
            DeleteDC(surface);
        }
    }
    CreatePens();
    if (!g_item.taskbarBackground)
        CaptureTaskbarBackground();

    if (dc) {
        DrawStatusStrip(window, dc, false);
        ReleaseDC(window, dc);
    }

    if (!g_item.timerRunning && SetTimer(window, SAMPLE_TIMER_ID, SAMPLE_PERIOD_MS, nullptr))
        g_item.timerRunning = true;
    return FALSE;
}

static void DeleteHandle(HGDIOBJ *handle)
{
    if (*handle) {
        DeleteObject(*handle);
        *handle = nullptr;
    }
}

LRESULT ClearCache(HWND window)
{
    if (g_item.timerRunning) {
        KillTimer(window, SAMPLE_TIMER_ID);
        g_item.timerRunning = false;
    }

    if (g_item.showTaskbarIcon && g_item.taskbarBackground) {
        int s = Scale(), side = 16 * s;
        HDC screen = platform::GetDC(nullptr);
        if (screen) {
            HDC memory = CreateCompatibleDC(screen);
            if (memory) {
                HGDIOBJ old = SelectObject(memory, g_item.taskbarBackground);
                BitBlt(screen, (int)g_item.xLocation, 5 * s, side, side, memory, 0, 0, SRCCOPY);
                SelectObject(memory, old);
                DeleteDC(memory);
            }
            platform::ReleaseDC(nullptr, screen);
        }
    }

    DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.taskbarBackground));
    DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.iconBackground));

    // Pens stay when the surface was never made; the refresh query re-creates
    // only the missing ones, so nothing leaks either way.
    if (g_item.gdiReady) {
        SelectObject(g_item.surfaceDC, g_item.surfaceOldBitmap);
        DeleteDC(g_item.surfaceDC);
        g_item.surfaceDC = nullptr;
        DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.surfaceBitmap));
        DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.redPen));
        DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.bluePen));
        DeleteHandle(reinterpret_cast<HGDIOBJ *>(&g_item.silverPen));
        g_item.gdiReady = false;
    }
    return 0;
}

// The Today screen paints its own background behind the item.
static LRESULT EraseBackground(HWND window, HDC dc)
{
    TODAYDRAWWATERMARKINFO info;
    info.hdc = dc;
    GetClientRect(window, &info.rc);
    info.hwnd = window;
    SendMessageW(GetParent(window), TODAYM_DRAWWATERMARK, 0, reinterpret_cast<LPARAM>(&info));
    return 1;
}

LRESULT CALLBACK ItemWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_TODAYCUSTOM_QUERYREFRESHCACHE:
        return QueryRefreshCache(window, reinterpret_cast<TODAYLISTITEM *>(lParam));
    case WM_TODAYCUSTOM_CLEARCACHE:
        return ClearCache(window);
    case WM_ERASEBKGND:
        return EraseBackground(window, reinterpret_cast<HDC>(wParam));
    case WM_PAINT:
        OnPaint(window);
        return 1;
    case WM_LBUTTONUP:
        OnTap(window, lParam);
        return 0;
    case WM_TIMER:
        if (wParam == SAMPLE_TIMER_ID)
            OnTick(window);
        return 0;
    case WM_NCCREATE:
    case WM_NCHITTEST:
        // A desktop window is never created without the first, and never
        // sees a tap without the second; the device sends neither.
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return 0;
}
