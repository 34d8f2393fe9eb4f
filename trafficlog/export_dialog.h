// export_dialog.h: the dialog that asks for the CSV export's date range and file.
#pragma once

#include <windows.h>

#define EXPORT_PATH_CHARS 255   // the edit holds at most 254 characters

INT_PTR CALLBACK ExportDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
