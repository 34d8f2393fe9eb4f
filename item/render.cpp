// render.cpp: the status strip: mini graph, signal icon and tool icons.
#include "item/item.h"
#include "item/strip.h"
#include "platform/platform.h"
#include "resources/resource.h"

namespace {

struct StripIcon {
    int x;                 // at s = 1
    int normal, hires;
};

// Left to right, the order they are drawn in.
const StripIcon kToolIcons[] = {
    {69, IDI_TOOL_USAGE, IDI_TOOL_USAGE_HIRES},
    {88, IDI_TOOL_DHCP, IDI_TOOL_DHCP_HIRES},
    {107, IDI_TOOL_PING, IDI_TOOL_PING_HIRES},
    {126, IDI_TOOL_ADAPTER, IDI_TOOL_ADAPTER_HIRES},
    {145, IDI_TOOL_SCANNER, IDI_TOOL_SCANNER_HIRES},
    {164, IDI_TOOL_CARD, IDI_TOOL_CARD_HIRES},
    {183, IDI_TOOL_INTRUDER, IDI_TOOL_INTRUDER_HIRES},
    {202, IDI_TOOL_APPLET17, IDI_TOOL_APPLET17_HIRES},
    {221, IDI_TOOL_APPLET19, IDI_TOOL_APPLET19_HIRES},
};

int SignalIconId(int dbm, bool hires)
{
    return (hires ? IDI_SIGNAL0_HIRES : IDI_SIGNAL0) + SignalBand(dbm);
}

void DrawBackground(HDC surface, bool hires)
{
    HBITMAP bitmap = LoadBitmapW(g_item.instance, MAKEINTRESOURCEW(hires ? IDB_GRAPH_HIRES : IDB_GRAPH));
    if (!bitmap)
        return;
    HDC memory = CreateCompatibleDC(surface);
    if (memory) {
        BITMAP info;
        GetObjectW(bitmap, sizeof info, &info);
        HGDIOBJ old = SelectObject(memory, bitmap);
        BitBlt(surface, 0, 0, info.bmWidth, info.bmHeight, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
    }
    DeleteObject(bitmap);
}

// One step of the graph in one colour; two ends on the baseline draw nothing,
// and neither does a missing pen (the DC's own pen would draw it black).
void GraphLine(HDC surface, HPEN pen, int x0, int h0, int x1, int h1, int base)
{
    if ((h0 == 0 && h1 == 0) || !pen)
        return;
    HGDIOBJ old = SelectObject(surface, pen);
    MoveToEx(surface, x0, base - h0, nullptr);
    LineTo(surface, x1, base - h1);
    SelectObject(surface, old);
}

void GraphStep(HDC surface, int x0, int previous, int x1, int current, int base)
{
    GraphLine(surface, g_item.bluePen, x0, GraphHeight(g_item.inDeltas[previous]), x1,
              GraphHeight(g_item.inDeltas[current]), base);
    GraphLine(surface, g_item.redPen, x0, GraphHeight(g_item.outDeltas[previous]), x1,
              GraphHeight(g_item.outDeltas[current]), base);
}

void DrawGraph(HDC surface, bool hires)
{
    int base = hires ? STRIP_GRAPH_BASELINE_HIRES : STRIP_GRAPH_BASELINE;
    int right = hires ? STRIP_GRAPH_RIGHT_HIRES : STRIP_GRAPH_RIGHT;
    int count = g_item.sampleCount;

    DrawBackground(surface, hires);
    if (count <= 0)
        return;

    if (count == 1) {
        int h = GraphHeight(g_item.inDeltas[0]);
        if (h > 0)
            SetPixel(surface, right, base - h, RGB(0, 0, 255));
        h = GraphHeight(g_item.outDeltas[0]);
        if (h > 0)
            SetPixel(surface, right, base - h, RGB(255, 0, 0));
    } else if (count < RING_SIZE) {
        for (int k = 1; k < count; k++) {
            int x = right + STRIP_GRAPH_STEP * (k - count);
            GraphStep(surface, x, k - 1, x + STRIP_GRAPH_STEP, k, base);
        }
    } else {
        // Oldest to newest: ringStart..19, then 0..ringIndex when the ring has wrapped.
        int x = right - STRIP_GRAPH_SPAN;
        int previous = -1;
        int start = g_item.ringStart < 0 ? 0 : g_item.ringStart;
        for (int i = start; i < RING_SIZE; i++, x += STRIP_GRAPH_STEP) {
            if (previous >= 0)
                GraphStep(surface, x - STRIP_GRAPH_STEP, previous, x, i, base);
            previous = i;
        }
        if (start != 0) {
            for (int i = 0; i <= g_item.ringIndex && i < RING_SIZE; i++, x += STRIP_GRAPH_STEP) {
                GraphStep(surface, x - STRIP_GRAPH_STEP, previous, x, i, base);
                previous = i;
            }
        }
    }

    if (!g_item.silverPen)
        return;
    HGDIOBJ old = SelectObject(surface, g_item.silverPen);
    MoveToEx(surface, STRIP_GRAPH_LINE_LEFT, base, nullptr);
    LineTo(surface, hires ? STRIP_GRAPH_LINE_RIGHT_HIRES : STRIP_GRAPH_LINE_RIGHT, base);
    SelectObject(surface, old);
}

// The signal icon over the Today background, which the Today screen paints
// into the icon's square as it does behind the whole item.
void DrawSignalIcon(HWND window, HDC dc, int id, int x, int side)
{
    IconSquare square;
    if (!BeginIconSquare(dc, x, STRIP_ICON_Y, side, &square))
        return;
    HWND parent = window ? GetParent(window) : nullptr;
    if (parent) {
        TODAYDRAWWATERMARKINFO info;
        info.hdc = square.dc;
        SetRect(&info.rc, x, STRIP_ICON_Y, x + side, STRIP_ICON_Y + side);
        info.hwnd = window;
        // The request speaks of the item's coordinates: the square's origin is (x, y).
        POINT origin;
        SetViewportOrgEx(square.dc, -x, -STRIP_ICON_Y, &origin);
        SendMessageW(parent, TODAYM_DRAWWATERMARK, 0, reinterpret_cast<LPARAM>(&info));
        SetViewportOrgEx(square.dc, origin.x, origin.y, nullptr);
    }
    EndIconSquare(dc, id, &square);
}

} // namespace

// At its own size, given: LoadIconW, or a size of 0, would stretch a
// 16-pixel icon to the system's icon size.
HICON LoadItemIcon(int id, int size)
{
    return static_cast<HICON>(platform::LoadImageW(g_item.instance, MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, 0));
}

void DrawItemIcon(HDC dc, int id, int x, int y, int size)
{
    HICON icon = LoadItemIcon(id, size);
    if (!icon)
        return;
    DrawIconEx(dc, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
}

bool BeginIconSquare(HDC dc, int x, int y, int side, IconSquare *square)
{
    square->dc = platform::CreateCompatibleDC(dc);
    square->bitmap = square->dc ? platform::CreateCompatibleBitmap(dc, side, side) : nullptr;
    if (!square->bitmap) {
        if (square->dc)
            DeleteDC(square->dc);
        return false;
    }
    square->old = SelectObject(square->dc, square->bitmap);
    square->x = x;
    square->y = y;
    square->side = side;
    BitBlt(square->dc, 0, 0, side, side, dc, x, y, SRCCOPY);
    return true;
}

void EndIconSquare(HDC dc, int id, IconSquare *square)
{
    DrawItemIcon(square->dc, id, 0, 0, square->side);
    BitBlt(dc, square->x, square->y, square->side, square->side, square->dc, 0, 0, SRCCOPY);
    SelectObject(square->dc, square->old);
    DeleteObject(square->bitmap);
    DeleteDC(square->dc);
}

int GraphHeight(DWORD bytes)
{
    int h;
    if (bytes == 0)
        h = 0;
    else if (bytes < 1000)
        h = 1;
    else if (bytes < 10000)
        h = bytes / 2000 + 2;
    else if (bytes < 100000)
        h = bytes / 20000 + 7;
    else if (bytes < 500000)
        h = bytes / 100000 + 12;
    else if (bytes < 800000)
        h = 17;
    else
        h = 18;
    if (IsHiResScreen())
        h += h / 2;
    return h;
}

void DrawStatusStrip(HWND window, HDC dc, bool fullPaint)
{
    bool hires = IsHiResScreen();
    int s = hires ? 2 : 1;

    if (g_item.signalDbm != g_item.lastDrawnSignal || fullPaint) {
        DrawSignalIcon(window, dc, SignalIconId(g_item.signalDbm, hires), STRIP_SIGNAL_X * s, STRIP_ICON_SIZE * s);
        g_item.lastDrawnSignal = g_item.signalDbm;
    } else if (g_item.lastDrawnSignal < -89) {
        // The lowest band is drawn again on every refresh.
        DrawSignalIcon(window, dc, hires ? IDI_SIGNAL0_HIRES : IDI_SIGNAL0, STRIP_SIGNAL_X * s, STRIP_ICON_SIZE * s);
        g_item.lastDrawnSignal = -90;
    }

    // Only a whole surface: a DC without its bitmap would copy a 1 x 1 default.
    if (!g_item.gdiReady)
        return;
    DrawGraph(g_item.surfaceDC, hires);
    // The same block on both screens: the small surface is simply clipped.
    BitBlt(dc, STRIP_GRAPH_X, hires ? STRIP_GRAPH_Y_HIRES : STRIP_GRAPH_Y, STRIP_GRAPH_COPY_WIDTH,
           STRIP_GRAPH_COPY_HEIGHT, g_item.surfaceDC, 0, 0, SRCCOPY);
}

void DrawItem(HWND window, HDC dc, bool fullPaint)
{
    DrawStatusStrip(window, dc, fullPaint);
    bool hires = IsHiResScreen();
    int s = hires ? 2 : 1;
    for (size_t i = 0; i < sizeof kToolIcons / sizeof kToolIcons[0]; i++)
        DrawItemIcon(dc, hires ? kToolIcons[i].hires : kToolIcons[i].normal, kToolIcons[i].x * s, STRIP_ICON_Y,
                     STRIP_ICON_SIZE * s);
}

void OnPaint(HWND window)
{
    HDC dc = GetDC(window);
    PAINTSTRUCT ps;
    BeginPaint(window, &ps);
    if (dc) {
        SetBkMode(dc, TRANSPARENT);
        DrawItem(window, dc, true);
        ReleaseDC(window, dc);
    }
    EndPaint(window, &ps);
}
