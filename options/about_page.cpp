// about_page.cpp: the options sheet's "About" page: the product line.
#include "options/options.h"

#include <commctrl.h>

INT_PTR CALLBACK AboutPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return TRUE;
    case WM_PAINT:
        DrawOptionsHeaderLine(page);
        return TRUE;
    case WM_CTLCOLORSTATIC:
        return OptionsHeaderColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_NOTIFY:
        if (reinterpret_cast<NMHDR *>(lParam)->code == (UINT)PSN_APPLY)
            return CloseOptionsSheet(page);
        break;
    }
    return FALSE;
}
