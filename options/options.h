// options.h: the item's options sheet: its pages and what they share.
#pragma once

#include <windows.h>

// The options dialog the Today settings opened; the pages close it.
extern HWND g_optionsDialog;

// The version the device's sheet and up-down control are asked to behave as.
#define OPTIONS_COMCTL_VERSION 524

INT_PTR CALLBACK AdapterPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK OptionsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK AboutPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
int CALLBACK OptionsSheetCallback(HWND sheet, UINT message, LPARAM lParam);

// What every page does alike: the header blue on white, the line under it
// on a portrait screen, and on apply the close of the sheet and the options
// dialog. True when the message was one of these; *result is then the answer.
bool HandleSheetPageMessage(HWND page, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR *result);
// A left-aligned report column.
void AddListColumn(HWND list, int index, LPCWSTR title, int width);
