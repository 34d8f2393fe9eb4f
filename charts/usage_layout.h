// usage_layout.h: where the usage view's parts sit, in logical pixels (doubled on a hi-res screen).
// The art generator reads these numbers too, so that the grid it draws meets the bars and labels.
#pragma once

#define USAGE_ICON_Y            43
#define USAGE_ICON_TABLE_X      31
#define USAGE_ICON_CHART_X      73
#define USAGE_ICON_EXPORT_X     157
#define USAGE_ICON_SIZE         24    // 48 on a hi-res screen: drawn at natural size

#define USAGE_CHART_X           30
#define USAGE_CHART_Y           72
#define USAGE_CHART_W           174
#define USAGE_CHART_H           134
#define USAGE_BASE              121   // bars stand on y = (base + chart y) x s
#define USAGE_BASE_HIRES        122
#define USAGE_HOURLY_STEP       7     // hour h at chart x + (h + 1) x step
#define USAGE_DAILY_STEP        5     // day d at chart x + d x step
#define USAGE_BAR_WIDTH         3     // device pixels, not scaled

#define USAGE_LABEL_LEFT        2
#define USAGE_LABEL_RIGHT       29
#define USAGE_LABEL_TOP         88
#define USAGE_LABEL_HEIGHT      15
#define USAGE_LABEL_STEP        20

#define USAGE_TABLE_X           5
#define USAGE_TABLE_Y           72
#define USAGE_TABLE_W           200
#define USAGE_TABLE_H           148
#define USAGE_ROW_TOP           89
#define USAGE_ROW_HEIGHT        12
#define USAGE_ROW_STEP          14
#define USAGE_COL0_LEFT         10
#define USAGE_COL0_RIGHT        41
#define USAGE_COL1_LEFT         46
#define USAGE_COL1_RIGHT        89
#define USAGE_COL2_LEFT         94
#define USAGE_COL2_RIGHT        137
#define USAGE_COL3_LEFT         142
#define USAGE_COL3_RIGHT        198

#define USAGE_PAGES_W           47
#define USAGE_PAGES_H           13
#define USAGE_PAGES_X           148   // portrait
#define USAGE_PAGES_Y           204
#define USAGE_PAGES_WIDE_X      208   // landscape
#define USAGE_PAGES_WIDE_Y      107
#define USAGE_INDICATOR_LEFT    10    // portrait: (10, 205) to (105, 218)
#define USAGE_INDICATOR_TOP     205
#define USAGE_INDICATOR_RIGHT   105
#define USAGE_INDICATOR_BOTTOM  218
#define USAGE_INDICATOR_WIDE_LEFT    208   // landscape: (208, 87) to (238, 117)
#define USAGE_INDICATOR_WIDE_TOP     87
#define USAGE_INDICATOR_WIDE_RIGHT   238
#define USAGE_INDICATOR_WIDE_BOTTOM  117

// Tap regions of the page arrows, bounds included: the left half turns to the
// next page, the right half back.
#define USAGE_NEXT_LEFT         150   // portrait, y 206-215
#define USAGE_NEXT_RIGHT        167
#define USAGE_PREV_LEFT         176
#define USAGE_PREV_RIGHT        193
#define USAGE_TAP_PAGES_TOP     206
#define USAGE_TAP_PAGES_BOTTOM  215
#define USAGE_NEXT_WIDE_LEFT    208   // landscape, y 107-120; up to but excluding 231
#define USAGE_PREV_WIDE_LEFT    231
#define USAGE_PREV_WIDE_RIGHT   255
#define USAGE_TAP_PAGES_WIDE_TOP     107
#define USAGE_TAP_PAGES_WIDE_BOTTOM  120
#define USAGE_TAP_ICON_TOP      43    // header icons, y 43-68, each 26 wide
#define USAGE_TAP_ICON_BOTTOM   68
#define USAGE_TAP_ICON_SPAN     25
