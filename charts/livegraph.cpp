// livegraph.cpp: the live traffic graph dialog, drawn from the tick's sample rings.
#include "charts/livegraph.h"

INT_PTR CALLBACK LiveGraphDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    }
    return message == WM_INITDIALOG;
}
