// diagnostics.h: the ping dialog with its host list, and the intruder detector dialog.
#pragma once

#include <windows.h>

#include "diagnostics/listparse.h"

#define PING_TIMER_ID 10
#define PING_TIMEOUT_MS 5000
#define INTRUDER_TIMER_ID 14

INT_PTR CALLBACK PingDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
bool LoadHostList(HWND combo);
bool AddHost(HWND dialog, LPCWSTR host);
bool DeleteHost(HWND dialog, LPCWSTR host);
void PingHost(HWND dialog, const char *host, DWORD timeoutMs);
// The host list's path (and its temporary companion's) into MAX_PATH characters.
void HostListPath(WCHAR *path, bool temporary);

INT_PTR CALLBACK IntruderDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
