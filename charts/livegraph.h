// livegraph.h: the live traffic graph's layout, scale ladder and painter.
#pragma once

#include <windows.h>

// Layout in logical units of the off-screen surface (doubled on a hi-res
// screen). The background image's grid is drawn from these same numbers by
// resources/art/livegraph.py, which reads them from this file.
#define LIVEGRAPH_WIDTH          210
#define LIVEGRAPH_HEIGHT         120
#define LIVEGRAPH_IMAGE_X        30    // where the 180 x 108 background goes
#define LIVEGRAPH_IMAGE_Y        10
#define LIVEGRAPH_IMAGE_WIDTH    180
#define LIVEGRAPH_IMAGE_HEIGHT   108
#define LIVEGRAPH_BASELINE       114   // 0 %
#define LIVEGRAPH_TOP_LEVEL      14    // 100 %; the labels' levels step down by 20
#define LIVEGRAPH_LEVEL_STEP     20
#define LIVEGRAPH_FIRST_COLUMN   35    // the oldest of 20 samples
#define LIVEGRAPH_NEWEST_COLUMN  168
#define LIVEGRAPH_COLUMN_STEP    7
#define LIVEGRAPH_LABEL_LEFT     2
#define LIVEGRAPH_LABEL_RIGHT    29
#define LIVEGRAPH_SURFACE_X      4     // where the surface lands in the dialog
#define LIVEGRAPH_SURFACE_Y      16

#define LIVEGRAPH_TIMER_ID       12
#define LIVEGRAPH_PERIOD_MS      2000
#define LIVEGRAPH_LABELS         5

// One row of the ladder: the full-scale value and the labels, top (100 %) first.
struct LiveGraphScale {
    DWORD fullScale;
    LPCWSTR labels[LIVEGRAPH_LABELS];
};

// The first row whose bound lies strictly above the largest value shown.
const LiveGraphScale &ChooseLiveGraphScale(DWORD largest);

// A column's height in logical units: v x 100 / F in 32-bit unsigned
// arithmetic (so it wraps for values above 42,949,672), capped at 100.
DWORD LiveGraphColumnHeight(DWORD value, DWORD fullScale);

// Paints the graph of g_item's sample rings on `surface` (210 x 120, times
// `scale`): white over `client`, the background stretched from `imageDC`,
// the columns with the two pens, and the scale labels when there are samples.
void DrawLiveGraph(HDC surface, HDC imageDC, const RECT &client, HPEN transmittedPen,
                   HPEN receivedPen, int scale);
