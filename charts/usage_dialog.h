// usage_dialog.h: the usage dialog's view state, kept while the dialog is open.
#pragma once

#include <windows.h>

#include "trafficlog/reader.h"

struct UsageView {
    int year, month, day;        // the picker's date
    int mode;                    // USAGE_DAILY or USAGE_HOURLY: the list's index
    int view;                    // USAGE_VIEW_CHART or USAGE_VIEW_TABLE
    int page;                    // table page, from 0
    double transmitted[SERIES_SLOTS], received[SERIES_SLOTS];
    double maximum;
    int slots;                   // ReadTrafficLog's result
    int rowsWithData;            // slots 0..slots with any traffic
};

extern UsageView g_usage;

// Reads the log for the stored date and mode and counts the rows with data.
int ReadUsageLog();
// A tap (pen lifted) at a client position of the dialog.
void OnUsageTap(HWND dialog, int x, int y);
