// sheet_win32.cpp: full-screen dialogs and property sheets on the device, and as a desktop plays them.
#include "platform/platform.h"
#include "platform/sheet.h"

#ifndef _WIN32_WCE
namespace {

// The device screen's area under its taskbar, in desktop coordinates: where
// the device puts a full-screen dialog.
RECT DeviceArea()
{
    RECT area = {0, 0, platform::GetSystemMetrics(SM_CXSCREEN), platform::GetSystemMetrics(SM_CYSCREEN)};
    HWND taskbar = platform::FindWindowW(L"HHTaskBar", nullptr);
    HWND screen = taskbar ? ::GetParent(taskbar) : nullptr;
    if (screen) {
        POINT origin = {0, 0};
        ::ClientToScreen(screen, &origin);
        RECT bar;
        ::GetWindowRect(taskbar, &bar);
        ::OffsetRect(&area, origin.x, origin.y);
        area.top = bar.bottom;
    }
    return area;
}

PFNPROPSHEETCALLBACK g_sheetCallback;

// The sheet is put where the device shows its maximised sheet, and loses
// the Cancel button the device's has not.
int CALLBACK DesktopSheetCallback(HWND sheet, UINT message, LPARAM lParam)
{
    if (message == PSCB_INITIALIZED && sheet) {
        RECT area = DeviceArea();
        ::SetWindowPos(sheet, nullptr, area.left, area.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        HWND cancel = ::GetDlgItem(sheet, IDCANCEL);
        if (cancel)
            ::ShowWindow(cancel, SW_HIDE);
    }
    return g_sheetCallback ? g_sheetCallback(sheet, message, lParam) : 0;
}

} // namespace
#endif

namespace platform {

BOOL SHInitDialog(PSHINITDLGINFO info)
{
#ifdef _WIN32_WCE
    return ::SHInitDialog(info);
#else
    if (!info || !info->hDlg)
        return FALSE;
    if ((info->dwMask & SHIDIM_FLAGS) && (info->dwFlags & SHIDIF_SIZEDLGFULLSCREEN)) {
        RECT area = DeviceArea();
        ::SetWindowPos(info->hDlg, nullptr, area.left, area.top, area.right - area.left,
                       area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return TRUE;
#endif
}

INT_PTR PropertySheetW(LPCPROPSHEETHEADERW header)
{
#ifdef _WIN32_WCE
    return ::PropertySheetW(header);
#else
    PROPSHEETHEADERW desktop = *header;
    desktop.dwSize = sizeof desktop;
    desktop.dwFlags = (header->dwFlags & ~PSH_MAXIMIZE) | PSH_NOAPPLYNOW | PSH_USECALLBACK;
    PFNPROPSHEETCALLBACK outer = g_sheetCallback;
    g_sheetCallback = (header->dwFlags & PSH_USECALLBACK) ? header->pfnCallback : nullptr;
    desktop.pfnCallback = DesktopSheetCallback;
    INT_PTR result = ::PropertySheetW(&desktop);
    g_sheetCallback = outer;
    // The device's sheet has no Cancel and always ends through its pages'
    // apply; a desktop sheet closed otherwise ends the options just the same.
    if (result == 0 && header->hwndParent)
        ::PostMessageW(header->hwndParent, WM_COMMAND, IDOK, 0);
    return result;
#endif
}

void DestroyPropertySheet(HWND sheet)
{
#ifdef _WIN32_WCE
    ::DestroyWindow(sheet);
#else
    // Destroying a desktop sheet inside its own apply pulls the window from
    // under comctl32; it closes by itself when the apply returns.
    (void)sheet;
#endif
}

} // namespace platform
