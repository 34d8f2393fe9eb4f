// options.cpp: the item's options sheet, run by the Today settings.
#include "item/item.h"

extern "C" INT_PTR WINAPI CustomItemOptionsDlgProc(HWND dialog, UINT message, WPARAM, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        EndDialog(dialog, IDOK);
        return TRUE;
    }
    return FALSE;
}
