// safelist.h: the safe list of known hardware addresses, and the intruder report.
#pragma once

#include <windows.h>

#include "diagnostics/listparse.h"

#define REPORT_LAST_NUMBER 599

bool SafeListContains(const BYTE *mac);
bool SafeListAdd(const BYTE *mac);
// Removes every record of mac; true when there was one, also when the file
// could not be replaced ("Cannot delete host!" shown to owner).
bool SafeListRemove(HWND owner, const BYTE *mac);
// Writes the rows of list 1089 of `owner` to the next free report in the
// documents folder and says where.
void ExportIntruderReport(HWND owner, const BYTE *ownMac);
// The safe list's path, "slist.dat" in the data folder, into MAX_PATH characters.
void SafeListPath(WCHAR *path);
