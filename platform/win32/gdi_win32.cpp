// gdi_win32.cpp: the item's drawing resources, made by the system's GDI.
#include "platform/platform.h"

namespace platform {

HDC CreateCompatibleDC(HDC dc)
{
    return ::CreateCompatibleDC(dc);
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    return ::CreateCompatibleBitmap(dc, width, height);
}

HPEN CreatePen(int style, int width, COLORREF colour)
{
    return ::CreatePen(style, width, colour);
}

HANDLE LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags)
{
    return ::LoadImageW(instance, name, type, width, height, flags);
}

} // namespace platform
