// datepicker.cpp: a date picker's display format, shown as the device shows it.
#include "platform/datepicker.h"
#include "platform/text.h"

#include <commctrl.h>
#include <wchar.h>

void SetDatePickerFormat(HWND picker, LPCWSTR format)
{
#ifndef _WIN32_WCE
    SYSTEMTIME date;
    WCHAR month[16], shown[64];
    const WCHAR *field = wcsstr(format, L"MMM");
    if (field && field[3] != L'M' && SendMessageW(picker, DTM_GETSYSTEMTIME, 0, (LPARAM)&date) == GDT_VALID &&
        GetDateFormatW(LOCALE_USER_DEFAULT, 0, &date, L"MMM", month, 16) > 0) {
        // "MMM' 'd" becomes "'Nov 'd": a quoted text right after the month
        // joins the month's own.
        const WCHAR *rest = field + 3;
        bool joined = *rest == L'\'';
        if (FormatText(shown, 64, L"%.*ls'%ls%ls%ls", (int)(field - format), format, month,
                       joined ? L"" : L"'", joined ? rest + 1 : rest) >= 0) {
            SendMessageW(picker, DTM_SETFORMATW, 0, (LPARAM)shown);
            return;
        }
    }
#endif
    SendMessageW(picker, DTM_SETFORMATW, 0, (LPARAM)format);
}
