// render.cpp: the status strip: mini graph, signal icon and tool icons.
#include "item/item.h"

void DrawStatusStrip(HWND, HDC, bool)
{
}

void OnPaint(HWND window)
{
    HDC dc = GetDC(window);
    PAINTSTRUCT ps;
    BeginPaint(window, &ps);
    SetBkMode(dc, TRANSPARENT);
    DrawStatusStrip(window, dc, true);
    EndPaint(window, &ps);
    ReleaseDC(window, dc);
}
