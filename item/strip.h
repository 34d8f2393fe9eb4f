// strip.h: the status strip's geometry, shared by its painter, its hit test and its artwork.
#pragma once

#include <windows.h>

// The graph surface and where it lands on the item (normal, hi-res).
#define STRIP_GRAPH_BASELINE        20
#define STRIP_GRAPH_BASELINE_HIRES  31
#define STRIP_GRAPH_RIGHT           41
#define STRIP_GRAPH_RIGHT_HIRES     85
#define STRIP_GRAPH_STEP            2
#define STRIP_GRAPH_SPAN            38
#define STRIP_GRAPH_LINE_LEFT       1
#define STRIP_GRAPH_LINE_RIGHT      42
#define STRIP_GRAPH_LINE_RIGHT_HIRES 86
#define STRIP_GRAPH_IMAGE_WIDTH     44
#define STRIP_GRAPH_IMAGE_HEIGHT    22
#define STRIP_GRAPH_IMAGE_WIDTH_HIRES  88
#define STRIP_GRAPH_IMAGE_HEIGHT_HIRES 33
#define STRIP_SURFACE_WIDTH         44
#define STRIP_SURFACE_HEIGHT        22
#define STRIP_SURFACE_WIDTH_HIRES   88
#define STRIP_SURFACE_HEIGHT_HIRES  44
#define STRIP_GRAPH_X               3
#define STRIP_GRAPH_Y               1
#define STRIP_GRAPH_Y_HIRES         3
#define STRIP_GRAPH_COPY_WIDTH      88
#define STRIP_GRAPH_COPY_HEIGHT     33

// The icon row: the signal icon, then the tools 19 pixels apart (x doubled on hi-res; y is not).
#define STRIP_SIGNAL_X              50
#define STRIP_ICON_Y                4
#define STRIP_ICON_SIZE             16

// Pixels above the baseline for one tick's byte count (half as many again on hi-res).
int GraphHeight(DWORD bytes);
// The strip with its tool icons (the paint handler's drawing).
void DrawItem(HWND window, HDC dc, bool fullPaint);
// A module icon of `size` pixels, and drawn so; a missing icon is skipped.
HICON LoadItemIcon(int id, int size);
void DrawItemIcon(HDC dc, int id, int x, int y, int size);

// An icon that is drawn again where it stands goes through a square of its
// own: the square starts as what `dc` shows at (x, y), the caller lays the
// clean background over it, and the icon goes on top; one copy puts it on
// `dc`. Drawn straight over its predecessor, an icon would blend into it: its
// soft edges darken with every redraw and the parts of another state that it
// does not cover stay. False (nothing to draw into) when GDI is short.
struct IconSquare {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ old;
    int x, y, side;
};
bool BeginIconSquare(HDC dc, int x, int y, int side, IconSquare *square);
void EndIconSquare(HDC dc, int id, IconSquare *square);

// Tap targets of the strip, the icon row's in hit-test order, then the graph.
enum StripTarget {
    kTargetNone = -1,
    kTargetSignal,
    kTargetScanner,
    kTargetCard,
    kTargetUsage,
    kTargetDhcp,
    kTargetPing,
    kTargetIntruder,
    kTargetApplet17,
    kTargetApplet19,
    kTargetAdapter,
    kTargetLiveGraph,
};

// A tap's position: x in the low 16 bits and y in the high 16, each unsigned.
POINT TapPoint(LPARAM position);
// The icon row's hit (first step of a tap), or kTargetNone.
int HitTestIconRow(int x, int y);
// The graph area's hit (second step of a tap, whatever the first found).
bool HitTestGraph(int x, int y);
// The dialog template a target opens now (landscape where it has one), 0 for the applets.
int TargetTemplate(int target);
// Opens what a target stands for: its dialog (modal, owner the item window) or its applet.
void OpenTarget(HWND window, int target);
