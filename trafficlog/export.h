// export.h: the CSV export dialog and the export of a date range.
#pragma once

#include <windows.h>

INT_PTR CALLBACK ExportDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
