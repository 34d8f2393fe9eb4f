// livegraph.h: the live traffic graph dialog.
#pragma once

#include <windows.h>

INT_PTR CALLBACK LiveGraphDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
