// resources_test.cpp: every image in the resources is in a form the device's bitmap and icon loaders take.
#include "tests/support.h"

namespace {

BOOL CALLBACK CollectName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names)
{
    reinterpret_cast<std::vector<LPCWSTR> *>(names)->push_back(name);   // ids, not strings
    return TRUE;
}

std::vector<LPCWSTR> Names(LPCWSTR type)
{
    std::vector<LPCWSTR> names;
    EnumResourceNamesW(nullptr, type, CollectName, reinterpret_cast<LONG_PTR>(&names));
    return names;
}

// Windows CE loads uncompressed (BI_RGB) images of 1, 2, 4, 8, 16, 24 or 32
// bits, no RLE; the desktop has no 2-bit ones, and a 1-bit one there turns
// monochrome and takes the DC's colours. So: 4 or 8 bits with a full colour
// table, or 24 bits; icons 32 bits as well. The bytes must be all there.
TEST(Images, EveryBitmapAndIconIsInAFormTheDeviceLoads)
{
    // A bitmap resource is the file without its file header; an icon image
    // holds its colours and its mask, one above the other.
    const struct { LPCWSTR type; const char *what; int heightFactor; } kinds[] = {
        {RT_BITMAP, "bitmap", 1},
        {RT_ICON, "icon", 2},
    };
    for (auto &kind : kinds) {
        std::vector<LPCWSTR> names = Names(kind.type);
        EXPECT_GE(names.size(), 9u) << kind.what;
        int palettized = 0;
        for (LPCWSTR name : names) {
            HRSRC found = FindResourceW(nullptr, name, kind.type);
            ASSERT_TRUE(found);
            DWORD size = SizeofResource(nullptr, found);
            auto *info = static_cast<const BITMAPINFOHEADER *>(LockResource(LoadResource(nullptr, found)));
            ASSERT_TRUE(info && size >= sizeof *info);
            int id = (int)(ULONG_PTR)name, bits = info->biBitCount;
            EXPECT_EQ(sizeof *info, info->biSize) << kind.what << " " << id;
            EXPECT_EQ((DWORD)BI_RGB, info->biCompression) << kind.what << " " << id;
            EXPECT_EQ(1, info->biPlanes) << kind.what << " " << id;
            bool allowed = bits == 4 || bits == 8 || bits == 24 || (bits == 32 && kind.type == RT_ICON);
            EXPECT_TRUE(allowed) << kind.what << " " << id << ": " << bits << " bits";
            DWORD table = 0;
            if (bits <= 8) {
                palettized++;
                EXPECT_EQ(0u, info->biClrUsed) << kind.what << " " << id;
                table = (1u << bits) * sizeof(RGBQUAD);
            }
            DWORD width = (DWORD)info->biWidth, height = (DWORD)info->biHeight / kind.heightFactor;
            DWORD need = info->biSize + table + ((width * bits + 31) / 32 * 4) * height;
            if (kind.type == RT_ICON)
                need += (width + 31) / 32 * 4 * height;
            EXPECT_LE(need, size) << kind.what << " " << id;
        }
        EXPECT_GT(palettized, 0) << kind.what;
    }
}

} // namespace
