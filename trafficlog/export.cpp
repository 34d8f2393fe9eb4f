// export.cpp: the CSV export of the traffic log, and the dialog that asks for its range.
#include "platform/text.h"
#include "platform/datepicker.h"
#include "trafficlog/export.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"
#include "item/item.h"
#include "platform/platform.h"
#include "platform/shell.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <shlobj.h>
#include <stdio.h>
#include <string.h>
#include <wchar.h>

namespace {

const char kCsvHeader[] = "\"Date\",\"Xmit\",\"Rcv\",\"Total\"\n";
const WCHAR kPickerFormat[] = L"MMM' 'd','yyy";
const int kFieldChars = 64;
const int kLineChars = 4 * kFieldChars + 16;

// What the dialog holds while it is open.
struct ExportDialog {
    ExportDate from, to;
    bool keyboardUp;
};
ExportDialog g_export;

void WriteBytes(HANDLE file, const char *bytes, int length)
{
    DWORD written;
    WriteFile(file, bytes, (DWORD)length, &written, nullptr);   // write errors are ignored
}

void WriteRow(HANDLE csv, LPCWSTR date, double transmitted, double received)
{
    WCHAR out[BYTE_COUNT_CHARS], in[BYTE_COUNT_CHARS], total[BYTE_COUNT_CHARS];
    FormatByteCount(transmitted, out, BYTE_COUNT_CHARS);
    FormatByteCount(received, in, BYTE_COUNT_CHARS);
    FormatByteCount(transmitted + received, total, BYTE_COUNT_CHARS);
    char line[kLineChars];
    WriteBytes(csv, line, FormatCsvRow(line, kLineChars, date, out, in, total));
}

// Sums one month's log into day slots 0-31 and the month totals. The first
// record the whole export reads is held to From's day (and in a one-month
// range to To's day as well); after it, only days past To in the last month
// are left out.
void ReadMonth(int year, int month, bool lastMonth, const ExportDate &from, const ExportDate &to,
               bool *firstRecord, double *transmitted, double *received, double *totalOut,
               double *totalIn)
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    HANDLE log = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // No file, or one that cannot be read: a month without traffic. Reads
    // that fail end the month rather than being tried again for ever.
    if (!log || log == INVALID_HANDLE_VALUE)
        return;
    // One buffer for the whole month: a cut tail keeps the previous record's
    // bytes behind it, as the chart's reader sees it too.
    TrafficLogRecord record = {};
    for (;;) {
        DWORD got = 0;
        if (!ReadFile(log, &record, sizeof record, &got, nullptr) || got == 0)
            break;
        int d = record.day;
        bool passes;
        if (*firstRecord) {
            *firstRecord = false;
            passes = d >= from.day && (!lastMonth || d <= to.day);
        } else {
            passes = !(lastMonth && d > to.day);
        }
        if (!passes)
            continue;
        double out = record.transmitted, in = record.received;
        *totalOut += out;
        *totalIn += in;
        // A damaged file may name any day: it counts in the month's total,
        // but only days 0-31 have a slot.
        if (d >= 0 && d < SERIES_SLOTS) {
            transmitted[d] += out;
            received[d] += in;
        }
    }
    CloseHandle(log);
}

void SetPickerToday(HWND dialog, int id, const SYSTEMTIME &today)
{
    HWND picker = GetDlgItem(dialog, id);
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, (LPARAM)&today);
    SetDatePickerFormat(picker, kPickerFormat);
}

void LowerKeyboard(HWND dialog)
{
    if (g_export.keyboardUp)
        platform::SHSipPreference(dialog, SIP_DOWN);
    g_export.keyboardUp = false;
}

void OpenExportDialog(HWND dialog)
{
    RECT rc;
    GetWindowRect(dialog, &rc);
    int w = rc.right - rc.left, h = rc.bottom - rc.top;
    SetWindowPos(dialog, nullptr, (g_item.screenWidth - w) / 2, (g_item.screenHeight - h) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER);

    SYSTEMTIME today;
    platform::GetLocalTime(&today);
    SetPickerToday(dialog, IDC_EXPORT_FROM, today);
    SetPickerToday(dialog, IDC_EXPORT_TO, today);
    g_export.from = {today.wYear, today.wMonth, today.wDay};
    g_export.to = g_export.from;

    WCHAR path[MAX_PATH + 16] = L"";
    if (!platform::SHGetSpecialFolderPathW(dialog, path, CSIDL_PERSONAL, FALSE))
        path[0] = 0;
    wcscat(path, L"\\export.csv");
    SetDlgItemTextW(dialog, IDC_EXPORT_FILE, path);
    SendDlgItemMessageW(dialog, IDC_EXPORT_FILE, EM_LIMITTEXT, EXPORT_PATH_CHARS - 1, 0);

    g_export.keyboardUp = false;
    platform::SHSipPreference(dialog, SIP_DOWN);
}

void TakeDateChange(const NMDATETIMECHANGE *change)
{
    if (change->dwFlags != GDT_VALID)
        return;
    SetDatePickerFormat(change->nmhdr.hwndFrom, kPickerFormat);
    ExportDate date = {change->st.wYear, change->st.wMonth, change->st.wDay};
    if (change->nmhdr.idFrom == IDC_EXPORT_FROM)
        g_export.from = date;
    else if (change->nmhdr.idFrom == IDC_EXPORT_TO)
        g_export.to = date;
}

void ToggleKeyboard(HWND dialog)
{
    if (!g_export.keyboardUp) {
        platform::SHSipPreference(dialog, SIP_UP);
        g_export.keyboardUp = true;
        // Asks for a control this template lacks: the focus goes to none.
        SetFocus(GetDlgItem(dialog, IDC_EXPORT_NO_CONTROL));
    } else {
        platform::SHSipPreference(dialog, SIP_DOWN);
        g_export.keyboardUp = false;
    }
}

void RunExport(HWND dialog)
{
    if (ExportRangeReversed(g_export.from, g_export.to)) {
        platform::MessageBoxW(dialog, L"Invalid date range!", L"Error", MB_ICONEXCLAMATION);
        return;
    }
    WCHAR path[EXPORT_PATH_CHARS] = L"";
    GetDlgItemTextW(dialog, IDC_EXPORT_FILE, path, EXPORT_PATH_CHARS);
    // No success message, and none when the file cannot be made: the dialog simply closes.
    ExportTrafficCsv(path, g_export.from, g_export.to);
    LowerKeyboard(dialog);
    EndDialog(dialog, IDOK);
}

} // namespace

bool ExportRangeReversed(const ExportDate &from, const ExportDate &to)
{
    if (to.year != from.year)
        return to.year < from.year;
    if (to.month != from.month)
        return to.month < from.month;
    return to.day < from.day;
}

int FormatCsvRow(char *line, int size, LPCWSTR date, LPCWSTR transmitted, LPCWSTR received,
                 LPCWSTR total)
{
    // The texts are ASCII in practice (month names, digits, KB/MB/GB).
    LPCWSTR wide[4] = {date, transmitted, received, total};
    char narrow[4][kFieldChars];
    for (int i = 0; i < 4; i++) {
        int n = WideCharToMultiByte(CP_ACP, 0, wide[i], -1, narrow[i], kFieldChars, nullptr, nullptr);
        if (n == 0)
            narrow[i][0] = 0;
        narrow[i][kFieldChars - 1] = 0;
    }
    int n = snprintf(line, size, "\"%s\",\"%s\",\"%s\",\"%s\"\n", narrow[0], narrow[1], narrow[2],
                     narrow[3]);
    return n < 0 ? 0 : (n >= size ? size - 1 : n);
}

void WriteTrafficCsv(HANDLE csv, const ExportDate &from, const ExportDate &to)
{
    WriteBytes(csv, kCsvHeader, (int)strlen(kCsvHeader));
    bool firstRecord = true;
    int year = from.year, month = from.month;
    // Month by month up to To's month; a reversed range writes the header only.
    while (year < to.year || (year == to.year && month <= to.month)) {
        double transmitted[SERIES_SLOTS] = {}, received[SERIES_SLOTS] = {};
        double totalOut = 0.0, totalIn = 0.0;
        bool lastMonth = year == to.year && month == to.month;
        ReadMonth(year, month, lastMonth, from, to, &firstRecord, transmitted, received, &totalOut,
                  &totalIn);

        // Every slot 1-31 is looked at, whatever the month's length.
        for (int d = 1; d <= 31; d++) {
            if (transmitted[d] > 0 || received[d] > 0) {
                WCHAR date[kFieldChars];
                FormatText(date, kFieldChars, L"%ls %02d, %04d", MonthAbbrev(month), d, year);
                WriteRow(csv, date, transmitted[d], received[d]);
            }
        }
        WCHAR title[kFieldChars];
        FormatText(title, kFieldChars, L"Total for %ls %04d", MonthAbbrev(month), year);
        WriteRow(csv, title, totalOut, totalIn);

        if (++month > 12) {
            month = 1;
            year++;
        }
    }
}

bool ExportTrafficCsv(LPCWSTR path, const ExportDate &from, const ExportDate &to)
{
    HANDLE csv = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
    if (!csv || csv == INVALID_HANDLE_VALUE)
        return false;
    WriteTrafficCsv(csv, from, to);
    CloseHandle(csv);
    return true;
}

INT_PTR CALLBACK ExportDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        OpenExportDialog(dialog);
        return TRUE;
    case WM_NOTIFY: {
        const NMHDR *header = (const NMHDR *)lParam;
        if (header->code == DTN_DATETIMECHANGE)
            TakeDateChange((const NMDATETIMECHANGE *)lParam);
        return FALSE;
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_EXPORT_KEYBOARD:
            ToggleKeyboard(dialog);
            return TRUE;
        case IDCANCEL:
            LowerKeyboard(dialog);
            EndDialog(dialog, IDCANCEL);
            return TRUE;
        case IDOK:
            RunExport(dialog);
            return TRUE;
        }
        break;
    }
    return FALSE;
}
