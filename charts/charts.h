// charts.h: the chart dialogs, and the usage chart's painter and scale.
#pragma once

#include <windows.h>

INT_PTR CALLBACK UsageDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK LiveGraphDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

#define USAGE_DAILY 0
#define USAGE_HOURLY 1
#define USAGE_VIEW_CHART 1
#define USAGE_VIEW_TABLE 2
#define USAGE_ROWS_PER_PAGE 8

// One row of the chart's scale ladder: used while the maximum is below
// `below`; a bar of 100 % stands for `fullScale` bytes.
struct UsageScale {
    double below;
    double fullScale;
    LPCWSTR labels[5];   // top to bottom
};
#define USAGE_SCALE_ROWS 33

// The first row whose bound is strictly above the maximum.
const UsageScale *ChooseUsageScale(double maximum);
// A bar's height in percent of the full scale: truncated, then held to 0-100.
int UsageBarPercent(double value, double fullScale);
// The number of table pages shown by the indicator (0 when no row has data).
int UsagePageCount(int rowsWithData);
// The indicator's text: "page/pages", counted from 1, or "0/0".
LPWSTR FormatUsagePages(int rowsWithData, int page, LPWSTR text, size_t size);
// A table row's first column: the day, or the hour in am/pm or 24-hour form.
LPWSTR FormatUsageSlot(int mode, int slot, bool amPm, LPWSTR text, size_t size);

// Paints the usage view (chart or table) into the dialog's client area.
// Series and maximum come from ReadTrafficLog; `slots` is its result.
void PaintUsageChart(HDC dc, int mode, int view, int rowsWithData, int page,
                     const double *transmitted, const double *received, double maximum, int slots);
