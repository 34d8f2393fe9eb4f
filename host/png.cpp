// png.cpp: a tiny PNG/BMP writer for the host's screenshots (no compression needed).
#include "host/png.h"

#include <stdio.h>
#include <string.h>
#include <vector>

namespace {

unsigned long g_crcTable[256];

void MakeCrcTable()
{
    for (unsigned n = 0; n < 256; n++) {
        unsigned long c = n;
        for (int k = 0; k < 8; k++)
            c = (c & 1) ? 0xEDB88320UL ^ (c >> 1) : c >> 1;
        g_crcTable[n] = c;
    }
}

unsigned long Crc(const unsigned char *p, size_t n, unsigned long c = 0xFFFFFFFFUL)
{
    for (size_t i = 0; i < n; i++)
        c = g_crcTable[(c ^ p[i]) & 0xFF] ^ (c >> 8);
    return c;
}

void Put32(std::vector<unsigned char> &v, unsigned long x)
{
    v.push_back((unsigned char)(x >> 24));
    v.push_back((unsigned char)(x >> 16));
    v.push_back((unsigned char)(x >> 8));
    v.push_back((unsigned char)x);
}

void Chunk(std::vector<unsigned char> &out, const char *type, const std::vector<unsigned char> &data)
{
    Put32(out, (unsigned long)data.size());
    std::vector<unsigned char> body(type, type + 4);
    body.insert(body.end(), data.begin(), data.end());
    out.insert(out.end(), body.begin(), body.end());
    Put32(out, Crc(body.data(), body.size()) ^ 0xFFFFFFFFUL);
}

std::vector<unsigned char> Png(int width, int height, const unsigned char *bgrx)
{
    MakeCrcTable();
    std::vector<unsigned char> raw;
    for (int y = 0; y < height; y++) {
        raw.push_back(0);   // filter: none
        for (int x = 0; x < width; x++) {
            const unsigned char *p = bgrx + ((size_t)y * width + x) * 4;
            raw.push_back(p[2]);
            raw.push_back(p[1]);
            raw.push_back(p[0]);
        }
    }
    // zlib stream of stored deflate blocks.
    std::vector<unsigned char> z = {0x78, 0x01};
    size_t pos = 0;
    do {
        size_t n = raw.size() - pos;
        if (n > 65535)
            n = 65535;
        bool last = pos + n == raw.size();
        z.push_back(last ? 1 : 0);
        z.push_back((unsigned char)n);
        z.push_back((unsigned char)(n >> 8));
        z.push_back((unsigned char)~n);
        z.push_back((unsigned char)(~n >> 8));
        z.insert(z.end(), raw.begin() + pos, raw.begin() + pos + n);
        pos += n;
    } while (pos < raw.size());
    unsigned long a = 1, b = 0;
    for (unsigned char c : raw) {
        a = (a + c) % 65521;
        b = (b + a) % 65521;
    }
    Put32(z, (b << 16) | a);

    std::vector<unsigned char> out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    std::vector<unsigned char> ihdr;
    Put32(ihdr, width);
    Put32(ihdr, height);
    ihdr.insert(ihdr.end(), {8, 2, 0, 0, 0});   // 8-bit RGB
    Chunk(out, "IHDR", ihdr);
    Chunk(out, "IDAT", z);
    Chunk(out, "IEND", {});
    return out;
}

std::vector<unsigned char> Bmp(int width, int height, const unsigned char *bgrx)
{
    int stride = (width * 3 + 3) & ~3;
    std::vector<unsigned char> out(54 + (size_t)stride * height, 0);
    BITMAPFILEHEADER fh = {};
    fh.bfType = 0x4D42;
    fh.bfSize = (DWORD)out.size();
    fh.bfOffBits = 54;
    BITMAPINFOHEADER ih = {};
    ih.biSize = sizeof ih;
    ih.biWidth = width;
    ih.biHeight = height;
    ih.biPlanes = 1;
    ih.biBitCount = 24;
    memcpy(&out[0], &fh, 14);
    memcpy(&out[14], &ih, 40);
    for (int y = 0; y < height; y++) {
        unsigned char *row = &out[54 + (size_t)(height - 1 - y) * stride];
        for (int x = 0; x < width; x++)
            memcpy(row + x * 3, bgrx + ((size_t)y * width + x) * 4, 3);
    }
    return out;
}

} // namespace

bool WriteImageFile(const wchar_t *path, int width, int height, const unsigned char *bgrx)
{
    size_t n = wcslen(path);
    bool bmp = n >= 4 && _wcsicmp(path + n - 4, L".bmp") == 0;
    std::vector<unsigned char> data = bmp ? Bmp(width, height, bgrx) : Png(width, height, bgrx);
    FILE *f = _wfopen(path, L"wb");
    if (!f)
        return false;
    bool ok = fwrite(data.data(), 1, data.size(), f) == data.size();
    return fclose(f) == 0 && ok;
}
