// options.cpp: the item's options dialog, run by the Today settings, and the sheet it opens.
#include "item/item.h"
#include "options/options.h"
#include "platform/sheet.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <string.h>

HWND g_optionsDialog;

int CALLBACK OptionsSheetCallback(HWND, UINT message, LPARAM)
{
    // The device draws the sheet in its own current look only when asked.
    return message == PSCB_GETVERSION ? OPTIONS_COMCTL_VERSION : 0;
}

static void RunOptionsSheet(HWND owner)
{
    static const int kTemplates[3] = {IDD_OPT_ADAPTER, IDD_OPT_OPTIONS, IDD_OPT_ABOUT};
    static const WCHAR *const kTitles[3] = {L"Adapter", L"Options", L"About"};
    static const DLGPROC kProcs[3] = {AdapterPageProc, OptionsPageProc, AboutPageProc};
    PROPSHEETPAGEW pages[3];
    memset(pages, 0, sizeof pages);
    for (int i = 0; i < 3; i++) {
        // The sheet steps through the array by this size.
        pages[i].dwSize = sizeof pages[i];
        pages[i].dwFlags = PSP_USETITLE;
        pages[i].hInstance = g_item.instance;
        pages[i].pszTemplate = MAKEINTRESOURCEW(kTemplates[i]);
        pages[i].pszTitle = kTitles[i];
        pages[i].pfnDlgProc = kProcs[i];
    }
    PROPSHEETHEADERW header;
    memset(&header, 0, sizeof header);
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_USECALLBACK | PSH_MAXIMIZE;
    header.hwndParent = owner;
    header.hInstance = g_item.instance;
    header.pszCaption = L"Quorvane";
    header.nPages = 3;
    header.nStartPage = 0;
    header.ppsp = pages;
    header.pfnCallback = OptionsSheetCallback;
    platform::PropertySheetW(&header);
}

void AddListColumn(HWND list, int index, LPCWSTR title, int width)
{
    LVCOLUMNW column;
    ZeroMemory(&column, sizeof column);
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.fmt = LVCFMT_LEFT;
    column.cx = width;
    column.pszText = const_cast<LPWSTR>(title);
    column.iSubItem = index;
    ListView_InsertColumn(list, index, &column);
}

static INT_PTR OptionsHeaderColor(HDC dc, HWND control)
{
    if (GetDlgCtrlID(control) != IDC_OPT_HEADER)
        return 0;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(0, 0, 255));
    SetBkColor(dc, RGB(255, 255, 255));
    return (INT_PTR)GetStockObject(WHITE_BRUSH);
}

// The device's pages underline their header on a portrait screen only.
static void DrawOptionsHeaderLine(HWND page)
{
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(page, &ps);
    if (!IsLandscape()) {
        bool hiRes = IsHiResScreen();
        int y = hiRes ? 48 : 24;
        MoveToEx(dc, 0, y, nullptr);
        LineTo(dc, hiRes ? 639 : 319, y);
    }
    EndPaint(page, &ps);
}

static INT_PTR CloseOptionsSheet(HWND page)
{
    platform::DestroyPropertySheet(GetParent(page));
    PostMessageW(g_optionsDialog, WM_COMMAND, IDOK, 0);
    return TRUE;
}

bool HandleSheetPageMessage(HWND page, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR *result)
{
    switch (message) {
    case WM_PAINT:
        DrawOptionsHeaderLine(page);
        *result = TRUE;
        return true;
    case WM_CTLCOLORSTATIC:
        *result = OptionsHeaderColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
        return true;
    case WM_NOTIFY:
        if (reinterpret_cast<NMHDR *>(lParam)->code == (UINT)PSN_APPLY) {
            *result = CloseOptionsSheet(page);
            return true;
        }
        break;
    }
    return false;
}

// The Today settings' own dialog becomes a full-screen page behind the sheet;
// the sheet runs modally inside its initialisation and posts its end.
extern "C" INT_PTR WINAPI CustomItemOptionsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG: {
        SHINITDLGINFO info;
        info.dwMask = SHIDIM_FLAGS;
        info.hDlg = dialog;
        info.dwFlags = SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN | SHIDIF_SIPDOWN;
        platform::SHInitDialog(&info);
        g_optionsDialog = dialog;
        RunOptionsSheet(dialog);
        return TRUE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) {
            EndDialog(dialog, 1);
            return TRUE;
        }
        break;
    case WM_CTLCOLORSTATIC:
        return OptionsHeaderColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    }
    return DefWindowProcW(dialog, message, wParam, lParam);
}
