// sheet_win32.cpp: full-screen dialogs and property sheets on the device, and as a desktop plays them.
#include "platform/platform.h"
#include "platform/sheet.h"
#include "platform/win32/dialog_win32.h"

#include <stdlib.h>
#include <string.h>

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

// The device's maximised sheet covers the screen under the taskbar, pages
// full size, with OK as its only button. Laid out before the first page
// is made, so every page takes the tab control's new size.
void LayOutAsDevice(HWND sheet)
{
    RECT area = DeviceArea();
    ::SetWindowPos(sheet, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client;
    ::GetClientRect(sheet, &client);
    int s = (area.right - area.left > 320 || area.bottom - area.top > 320) ? 2 : 1;
    int margin = 4 * s, buttonWidth = 50 * s, buttonHeight = 20 * s;
    static const int kHidden[] = {IDCANCEL, IDHELP, 0x3021 /* Apply */};
    for (int i = 0; i < 3; i++) {
        HWND button = ::GetDlgItem(sheet, kHidden[i]);
        if (button)
            ::ShowWindow(button, SW_HIDE);
    }
    HWND ok = ::GetDlgItem(sheet, IDOK);
    if (ok)
        ::SetWindowPos(ok, nullptr, client.right - margin - buttonWidth, client.bottom - margin - buttonHeight,
                       buttonWidth, buttonHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    HWND tab = PropSheet_GetTabControl(sheet);
    if (tab)
        ::SetWindowPos(tab, nullptr, margin, margin, client.right - 2 * margin,
                       client.bottom - 3 * margin - buttonHeight, SWP_NOZORDER | SWP_NOACTIVATE);
}

int CALLBACK DesktopSheetCallback(HWND sheet, UINT message, LPARAM lParam)
{
    if (message == PSCB_INITIALIZED && sheet)
        LayOutAsDevice(sheet);
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
    desktop.dwFlags = (header->dwFlags & ~PSH_MAXIMIZE) | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP | PSH_USECALLBACK;
    PFNPROPSHEETCALLBACK outer = g_sheetCallback;
    g_sheetCallback = (header->dwFlags & PSH_USECALLBACK) ? header->pfnCallback : nullptr;
    desktop.pfnCallback = DesktopSheetCallback;

    // A hi-res device lays its pages out at 192 dpi: each page from a copy
    // of its template with the font doubled, as the device's dialogs are.
    bool hiRes = platform::GetSystemMetrics(SM_CXSCREEN) > 320 || platform::GetSystemMetrics(SM_CYSCREEN) > 320;
    UINT count = (header->dwFlags & PSH_PROPSHEETPAGE) ? header->nPages : 0;
    PROPSHEETPAGEW *pages = hiRes && count ? static_cast<PROPSHEETPAGEW *>(calloc(count, sizeof *pages)) : nullptr;
    BYTE **copies = pages ? static_cast<BYTE **>(calloc(count, sizeof *copies)) : nullptr;
    if (pages && copies) {
        const BYTE *from = reinterpret_cast<const BYTE *>(header->ppsp);
        for (UINT i = 0; i < count; i++) {
            const PROPSHEETPAGEW *page = reinterpret_cast<const PROPSHEETPAGEW *>(from);
            memcpy(&pages[i], page, page->dwSize < sizeof *pages ? page->dwSize : sizeof *pages);
            pages[i].dwSize = sizeof *pages;
            from += page->dwSize;
            if (pages[i].dwFlags & PSP_DLGINDIRECT)
                continue;
            HRSRC found = ::FindResourceW(pages[i].hInstance, pages[i].pszTemplate, MAKEINTRESOURCEW(5) /* RT_DIALOG */);
            HGLOBAL loaded = found ? ::LoadResource(pages[i].hInstance, found) : nullptr;
            copies[i] = loaded ? CopyTemplateAtDeviceDpi(static_cast<LPCDLGTEMPLATE>(::LockResource(loaded))) : nullptr;
            if (copies[i]) {
                pages[i].pResource = reinterpret_cast<LPCDLGTEMPLATE>(copies[i]);
                pages[i].dwFlags |= PSP_DLGINDIRECT;
            }
        }
        desktop.ppsp = pages;
    }
    INT_PTR result = ::PropertySheetW(&desktop);
    g_sheetCallback = outer;
    for (UINT i = 0; copies && i < count; i++)
        free(copies[i]);
    free(copies);
    free(pages);
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
