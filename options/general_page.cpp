// general_page.cpp: the options sheet's "Options" page: taskbar icon, hour format and the traffic logs.
#include "item/item.h"
#include "options/options.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <stdlib.h>

// The up-down control's range runs from 639 down to 0, so that its up arrow
// moves the icon left: minimum 639 in the high word, maximum 0 in the low.
static const LPARAM kXLocationRange = 0x027F0000;
static const int kTextChars = 10;

static bool IsDigit(WCHAR c)
{
    return c >= L'0' && c <= L'9';
}

// A log's name starts with four digits of year and two of month; what
// follows them is not looked at, so a copy such as 200611-copy.log counts.
static bool ParseLogName(LPCWSTR name, LPWSTR year, LPWSTR month)
{
    for (int i = 0; i < 6; i++) {
        if (!IsDigit(name[i]))
            return false;
    }
    CopyText(year, name, 5);
    CopyText(month, name + 4, 3);
    return true;
}

// Meant as ascending by year and month, but never answers "less": the list
// view's sort is left to make of it what it does on each platform.
static int CALLBACK CompareLogRows(LPARAM first, LPARAM second, LPARAM)
{
    return first > second ? 1 : 0;
}

static void LogPattern(LPWSTR pattern, size_t size)
{
    FormatText(pattern, size, L"%ls\\*.log", g_item.dataFolder);
}

// A failed search leaves the rows as they are, also the row of a log that
// was just deleted.
static void FillLogList(HWND list)
{
    WCHAR pattern[MAX_PATH + 8];
    LogPattern(pattern, MAX_PATH + 8);
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(pattern, &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    ListView_DeleteAllItems(list);
    do {
        WCHAR year[5], month[3];
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) || !ParseLogName(found.cFileName, year, month))
            continue;
        LVITEMW item;
        ZeroMemory(&item, sizeof item);
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = ListView_GetItemCount(list);
        item.pszText = year;
        item.lParam = wcstol(year, nullptr, 10) * 100 + wcstol(month, nullptr, 10);
        int row = ListView_InsertItem(list, &item);
        if (row >= 0)
            ListView_SetItemText(list, row, 1, month);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    ListView_SortItems(list, CompareLogRows, 0);
}

static void InitOptionsPage(HWND page)
{
    CheckDlgButton(page, IDC_OPT_TASKBAR_ICON, g_item.showTaskbarIcon ? BST_CHECKED : BST_UNCHECKED);
    HWND spin = GetDlgItem(page, IDC_OPT_XSPIN);
    SendMessageW(spin, CCM_SETVERSION, OPTIONS_COMCTL_VERSION, 0);
    SendMessageW(spin, UDM_SETRANGE, 0, kXLocationRange);
    SendMessageW(spin, UDM_SETPOS, 0, MAKELPARAM(g_item.xLocation, 0));
    WCHAR text[16];
    FormatText(text, 16, L"%d", (int)g_item.xLocation);
    SetDlgItemTextW(page, IDC_OPT_XLOCATION, text);
    SendDlgItemMessageW(page, IDC_OPT_XLOCATION, EM_LIMITTEXT, 3, 0);
    CheckDlgButton(page, g_item.amPmFormat ? IDC_OPT_AMPM : IDC_OPT_MILITARY, BST_CHECKED);

    HWND list = GetDlgItem(page, IDC_OPT_LOGS);
    int width = IsHiResScreen() ? 150 : 75;
    AddListColumn(list, 0, L"Year", width);
    AddListColumn(list, 1, L"Month", width);
    ListView_SetExtendedListViewStyle(list, ListView_GetExtendedListViewStyle(list) | LVS_EX_FULLROWSELECT);
    FillLogList(list);
}

static void DeleteAllLogs(HWND page)
{
    MessageBeep(MB_ICONASTERISK);
    if (platform::MessageBoxW(page, L"Are you sure you want to delete ALL log data?", L"Question",
                              MB_OKCANCEL | MB_ICONQUESTION) != IDOK)
        return;
    WCHAR pattern[MAX_PATH + 8];
    LogPattern(pattern, MAX_PATH + 8);
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(pattern, &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                continue;
            WCHAR path[MAX_PATH * 2];
            FormatText(path, MAX_PATH * 2, L"%ls\\%ls", g_item.dataFolder, found.cFileName);
            DeleteFileW(path);
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    ListView_DeleteAllItems(GetDlgItem(page, IDC_OPT_LOGS));
}

// The file is named again from the row's texts, so deleting the row of a
// copy such as 200611-copy.log deletes 200611.log.
static void DeleteSelectedLog(HWND page)
{
    HWND list = GetDlgItem(page, IDC_OPT_LOGS);
    int row = ListView_GetNextItem(list, -1, LVNI_SELECTED);
    if (row < 0 || ListView_GetItemCount(list) == 0)
        return;
    WCHAR year[kTextChars] = L"", month[kTextChars] = L"";
    ListView_GetItemText(list, row, 0, year, kTextChars);
    ListView_GetItemText(list, row, 1, month, kTextChars);
    WCHAR path[MAX_PATH + 32], question[96];
    FormatText(path, MAX_PATH + 32, L"%ls\\%ls%ls.log", g_item.dataFolder, year, month);
    FormatText(question, 96, L"Are you sure you want to delete %ls/%ls log data?", year, month);
    if (platform::MessageBoxW(page, question, L"Question", MB_OKCANCEL | MB_ICONQUESTION) != IDOK)
        return;
    DeleteFileW(path);
    FillLogList(list);
}

// Leaving the page saves it. A moved icon is first taken off the screen at
// its old place; the next tick draws it at the new one.
static void SaveOptionsPage(HWND page)
{
    WCHAR text[4] = L"";
    GetDlgItemTextW(page, IDC_OPT_XLOCATION, text, 4);
    long x = wcstol(text, nullptr, 10);
    if (x != (long)g_item.xLocation) {
        EraseTaskbarIcon();
        if (x < 0)
            x = 0;
        if (x > 639)
            x = 639;
        g_item.xLocation = g_settings.XLocation = (DWORD)x;
        WriteSettingDword(L"XLocation", g_settings.XLocation);
    }
    bool show = IsDlgButtonChecked(page, IDC_OPT_TASKBAR_ICON) == BST_CHECKED;
    if (show != g_item.showTaskbarIcon) {
        g_item.showTaskbarIcon = show;
        g_settings.TIcon = show ? 1 : 0;
        WriteSettingDword(L"TIcon", g_settings.TIcon);
    }
    bool amPm = IsDlgButtonChecked(page, IDC_OPT_AMPM) == BST_CHECKED;
    if (amPm != g_item.amPmFormat) {
        g_item.amPmFormat = amPm;
        g_settings.TFormat = amPm ? 1 : 0;
        WriteSettingDword(L"TFormat", g_settings.TFormat);
    }
}

INT_PTR CALLBACK OptionsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        InitOptionsPage(page);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDC_OPT_DELETE_ALL) {
            DeleteAllLogs(page);
            return TRUE;
        }
        if (LOWORD(wParam) == IDC_OPT_DELETE) {
            DeleteSelectedLog(page);
            return TRUE;
        }
        break;
    case WM_NOTIFY:
        if (reinterpret_cast<NMHDR *>(lParam)->code == (UINT)PSN_KILLACTIVE) {
            SaveOptionsPage(page);
            return FALSE;   // the page may be left
        }
        break;
    }
    INT_PTR result;
    return HandleSheetPageMessage(page, message, wParam, lParam, &result) ? result : FALSE;
}
