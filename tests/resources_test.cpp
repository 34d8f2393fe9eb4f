// resources_test.cpp: every image in the resources is in a form the device's bitmap and icon loaders take.
#include "tests/support.h"

namespace {

// Windows CE loads uncompressed (BI_RGB) images of 1, 2, 4, 8, 16, 24 or 32
// bits, no RLE; the desktop has no 2-bit ones, and a 1-bit one there turns
// monochrome and takes the DC's colours. So: 4 or 8 bits with a full colour
// table, or 24 bits; icons 32 bits as well. The bytes must be all there.
TEST(Images, EveryBitmapAndIconIsInAFormTheDeviceLoads)
{
    // A bitmap resource is the file without its file header; an icon image
    // holds its colours and its mask, one above the other.
    for (LPCWSTR type : {RT_BITMAP, RT_ICON}) {
        std::vector<LPCWSTR> names;   // ids, not strings
        EnumResourceNamesW(nullptr, type, [](HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) -> BOOL {
            reinterpret_cast<std::vector<LPCWSTR> *>(names)->push_back(name);
            return TRUE;
        }, reinterpret_cast<LONG_PTR>(&names));
        bool icon = type == RT_ICON;
        int palettized = 0;
        for (LPCWSTR name : names) {
            HRSRC found = FindResourceW(nullptr, name, type);
            DWORD size = SizeofResource(nullptr, found);
            auto *info = static_cast<const BITMAPINFOHEADER *>(LockResource(LoadResource(nullptr, found)));
            ASSERT_TRUE(info && size >= sizeof *info);
            int id = (int)(ULONG_PTR)name, bits = info->biBitCount;
            bool allowed = bits == 4 || bits == 8 || bits == 24 || (bits == 32 && icon);
            EXPECT_TRUE(info->biSize == sizeof *info && info->biCompression == BI_RGB && info->biPlanes == 1 && allowed &&
                        info->biClrUsed == 0) << (icon ? "icon " : "bitmap ") << id << ": " << bits << " bits";
            palettized += bits <= 8;
            DWORD width = info->biWidth, height = info->biHeight / (icon ? 2 : 1);
            DWORD table = bits <= 8 ? (1u << bits) * sizeof(RGBQUAD) : 0, mask = icon ? (width + 31) / 32 * 4 * height : 0;
            EXPECT_LE(info->biSize + table + (width * bits + 31) / 32 * 4 * height + mask, size) << id;
        }
        EXPECT_TRUE(names.size() >= 9 && palettized > 0) << names.size() << " " << palettized;
    }
}

} // namespace
