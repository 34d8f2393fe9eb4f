// usage_dialog.cpp: the usage dialog: date, daily or hourly, chart or table, export.
#include "platform/text.h"
#include "platform/datepicker.h"
#include "charts/charts.h"
#include "charts/usage_dialog.h"
#include "charts/usage_layout.h"
#include "item/item.h"
#include "platform/platform.h"
#include "resources/resource.h"
#include "trafficlog/export_dialog.h"
#include "trafficlog/reader.h"

#include <commctrl.h>
#include <stdio.h>
#include <windowsx.h>

UsageView g_usage;

namespace {

const WCHAR kMonthFormat[] = L"MMM','yyy";
const WCHAR kDayFormat[] = L"MMM' 'd','yyy";


void Repaint(HWND dialog)
{
    InvalidateRect(dialog, nullptr, TRUE);
}

void OpenDialog(HWND dialog)
{
    PlaceToolDialog(dialog, true);

    SYSTEMTIME today;
    platform::GetLocalTime(&today);
    g_usage.year = today.wYear;
    g_usage.month = today.wMonth;
    g_usage.day = today.wDay;
    g_usage.view = USAGE_VIEW_CHART;
    g_usage.mode = USAGE_DAILY;
    g_usage.page = 0;

    HWND picker = GetDlgItem(dialog, IDC_USAGE_DATE);
    DateTime_SetSystemtime(picker, GDT_VALID, &today);
    SetDatePickerFormat(picker, kMonthFormat);

    HWND list = GetDlgItem(dialog, IDC_USAGE_MODE);
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Daily"));
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Hourly"));
    SendMessageW(list, CB_SETCURSEL, 0, 0);
}

void SetTitle(HWND dialog)
{
    WCHAR title[64], shown[64];
    if (g_usage.mode == USAGE_HOURLY)
        FormatText(title, 64, L"Hourly Traffic for %ls %d, %d", MonthAbbrev(g_usage.month), g_usage.day,
                 g_usage.year);
    else
        FormatText(title, 64, L"Daily Traffic for %ls %d", MonthAbbrev(g_usage.month), g_usage.year);
    // Setting the same text again would only make the title flicker.
    GetDlgItemTextW(dialog, IDC_USAGE_TITLE, shown, 64);
    if (lstrcmpW(title, shown) != 0)
        SetDlgItemTextW(dialog, IDC_USAGE_TITLE, title);
}

void Paint(HWND dialog)
{
    SetTitle(dialog);
    // Read on every paint: what the tick logs while the dialog is open shows
    // at the next repaint.
    ReadUsageLog();

    PAINTSTRUCT ps;
    HDC dc = BeginPaint(dialog, &ps);
    if (!dc)
        return;
    // The painter takes the face of the font it finds: the dialog's own.
    HFONT dialogFont = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
    HGDIOBJ old = dialogFont ? SelectObject(dc, dialogFont) : nullptr;
    PaintUsageChart(dc, g_usage.mode, g_usage.view, g_usage.rowsWithData, g_usage.page,
                    g_usage.transmitted, g_usage.received, g_usage.maximum, g_usage.slots);
    if (old)
        SelectObject(dc, old);
    EndPaint(dialog, &ps);
}

void OnDateChange(HWND dialog, const NMDATETIMECHANGE *change)
{
    if (change->dwFlags != GDT_VALID)
        return;
    SetDatePickerFormat(change->nmhdr.hwndFrom, g_usage.mode == USAGE_HOURLY ? kDayFormat : kMonthFormat);
    const SYSTEMTIME &t = change->st;
    if (t.wYear == g_usage.year && t.wMonth == g_usage.month && t.wDay == g_usage.day)
        return;
    g_usage.year = t.wYear;
    g_usage.month = t.wMonth;
    g_usage.day = t.wDay;
    if (g_usage.view == USAGE_VIEW_TABLE)
        g_usage.page = 0;
    Repaint(dialog);
}

// Only a choice made in the dropped-down list counts.
void OnModeCommand(HWND dialog)
{
    HWND list = GetDlgItem(dialog, IDC_USAGE_MODE);
    if (!SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0))
        return;
    int mode = (int)SendMessageW(list, CB_GETCURSEL, 0, 0);
    if (mode == g_usage.mode)
        return;
    g_usage.mode = mode;
    SetDatePickerFormat(GetDlgItem(dialog, IDC_USAGE_DATE), mode == USAGE_HOURLY ? kDayFormat : kMonthFormat);
    // Back to daily the page stays where it was.
    if (mode == USAGE_HOURLY)
        g_usage.page = 0;
    Repaint(dialog);
}

void OpenExport(HWND dialog)
{
    HRSRC found = FindResourceW(g_item.instance, MAKEINTRESOURCEW(IDD_EXPORT), RT_DIALOG);
    HGLOBAL loaded = found ? LoadResource(g_item.instance, found) : nullptr;
    if (!loaded)
        return;
    platform::DialogBoxIndirectParamW(g_item.instance, static_cast<LPCDLGTEMPLATE>(LockResource(loaded)),
                                      dialog, ExportDlgProc, 0);
}

bool Within(int v, int low, int high)
{
    return v >= low && v <= high;
}

void PreviousPage(HWND dialog)
{
    if (g_usage.page >= 1) {
        g_usage.page--;
        Repaint(dialog);
    }
}

void NextPage(HWND dialog)
{
    if (g_usage.rowsWithData > (g_usage.page + 1) * USAGE_ROWS_PER_PAGE) {
        g_usage.page++;
        Repaint(dialog);
    }
}

} // namespace

int ReadUsageLog()
{
    g_usage.slots = ReadTrafficLog(g_usage.mode, g_usage.year, g_usage.month, g_usage.day,
                                   g_usage.transmitted, g_usage.received, &g_usage.maximum);
    // Counted from slot 0, so hour 0 makes pages although the table never lists it.
    g_usage.rowsWithData = 0;
    for (int i = 0; i <= g_usage.slots && i < SERIES_SLOTS; i++) {
        if (g_usage.transmitted[i] > 0 || g_usage.received[i] > 0)
            g_usage.rowsWithData++;
    }
    return g_usage.slots;
}

void OnUsageTap(HWND dialog, int x, int y)
{
    int s = IsHiResScreen() ? 2 : 1;
    if (Within(y, USAGE_TAP_ICON_TOP * s, USAGE_TAP_ICON_BOTTOM * s)) {
        if (Within(x, USAGE_ICON_TABLE_X * s, (USAGE_ICON_TABLE_X + USAGE_TAP_ICON_SPAN) * s)) {
            if (g_usage.view != USAGE_VIEW_TABLE) {
                g_usage.view = USAGE_VIEW_TABLE;
                g_usage.page = 0;
                Repaint(dialog);
            }
        } else if (Within(x, USAGE_ICON_CHART_X * s, (USAGE_ICON_CHART_X + USAGE_TAP_ICON_SPAN) * s)) {
            if (g_usage.view != USAGE_VIEW_CHART) {
                g_usage.view = USAGE_VIEW_CHART;
                Repaint(dialog);
            }
        } else if (Within(x, USAGE_ICON_EXPORT_X * s, (USAGE_ICON_EXPORT_X + USAGE_TAP_ICON_SPAN) * s)) {
            OpenExport(dialog);
        }
    }

    // The arrows turn pages in either view.
    if (g_item.screenWidth >= g_item.screenHeight) {
        if (Within(y, USAGE_TAP_PAGES_WIDE_TOP * s, USAGE_TAP_PAGES_WIDE_BOTTOM * s)) {
            if (Within(x, USAGE_PREV_WIDE_LEFT * s, USAGE_PREV_WIDE_RIGHT * s))
                PreviousPage(dialog);
            else if (x >= USAGE_NEXT_WIDE_LEFT * s && x < USAGE_PREV_WIDE_LEFT * s)
                NextPage(dialog);
        }
    } else if (Within(y, USAGE_TAP_PAGES_TOP * s, USAGE_TAP_PAGES_BOTTOM * s)) {
        if (Within(x, USAGE_PREV_LEFT * s, USAGE_PREV_RIGHT * s))
            PreviousPage(dialog);
        else if (Within(x, USAGE_NEXT_LEFT * s, USAGE_NEXT_RIGHT * s))
            NextPage(dialog);
    }
}

INT_PTR CALLBACK UsageDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        OpenDialog(dialog);
        return TRUE;
    case WM_PAINT:
        Paint(dialog);
        return TRUE;
    case WM_NOTIFY: {
        const NMHDR *header = reinterpret_cast<const NMHDR *>(lParam);
        if (header->idFrom == IDC_USAGE_DATE && header->code == DTN_DATETIMECHANGE)
            OnDateChange(dialog, reinterpret_cast<const NMDATETIMECHANGE *>(lParam));
        break;
    }
    case WM_LBUTTONUP:
        OnUsageTap(dialog, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDC_USAGE_MODE) {
            OnModeCommand(dialog);
            return TRUE;
        }
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    }
    return FALSE;
}
