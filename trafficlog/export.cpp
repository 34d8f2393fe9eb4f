// export.cpp: the CSV export of the traffic log, and the dialog that asks for its range.
#include "trafficlog/export.h"

INT_PTR CALLBACK ExportDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    }
    return message == WM_INITDIALOG;
}
