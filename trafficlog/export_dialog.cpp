// export_dialog.cpp: the dialog that asks for the export's range and file.
#include "trafficlog/export_dialog.h"
#include "trafficlog/export.h"
#include "item/item.h"
#include "platform/platform.h"
#include "platform/shell.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <shlobj.h>
#include <wchar.h>

namespace {

const WCHAR kPickerFormat[] = L"MMM' 'd','yyy";

// What the dialog holds while it is open.
struct ExportDialog {
    ExportDate from, to;
    bool keyboardUp;
};
ExportDialog g_export;

void SetPickerToday(HWND dialog, int id, const SYSTEMTIME &today)
{
    HWND picker = GetDlgItem(dialog, id);
    SendMessageW(picker, DTM_SETFORMATW, 0, (LPARAM)kPickerFormat);
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, (LPARAM)&today);
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
