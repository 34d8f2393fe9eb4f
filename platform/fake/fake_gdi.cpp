// fake_gdi.cpp: real GDI behind creations that a test can make fail, and icons sized as the device sizes them.
#include "platform/fake/fake.h"

namespace platform {

HDC CreateCompatibleDC(HDC dc)
{
    if (fake::ShouldFail(fake::kCreateCompatibleDC))
        return nullptr;
    fake::g_device.compatibleDCs.push_back(::CreateCompatibleDC(dc));
    return fake::g_device.compatibleDCs.back();
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    return fake::ShouldFail(fake::kCreateCompatibleBitmap) ? nullptr : ::CreateCompatibleBitmap(dc, width, height);
}

HPEN CreatePen(int style, int width, COLORREF colour)
{
    return fake::ShouldFail(fake::kCreatePen) ? nullptr : ::CreatePen(style, width, colour);
}

// The device reads a size of 0 as its system icon size (32), where a desktop
// takes the image's own: an icon loaded without its size comes out stretched.
HANDLE LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags)
{
    if (type == IMAGE_ICON && width == 0 && height == 0)
        width = height = 32;
    return ::LoadImageW(instance, name, type, width, height, flags);
}

} // namespace platform
