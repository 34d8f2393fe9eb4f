// about_page.cpp: the options sheet's "About" page: the product line.
#include "options/options.h"

INT_PTR CALLBACK AboutPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    INT_PTR result;
    if (HandleSheetPageMessage(page, message, wParam, lParam, &result))
        return result;
    return message == WM_INITDIALOG;
}
