// zz_usage_dump_test.cpp: temporary: dumps painted views for a look.
#include "charts/charts.h"
#include "tests/support.h"
#include "trafficlog/reader.h"
#include <stdio.h>
namespace {
void Save(HBITMAP bmp, HDC dc, int w, int h, const char *path)
{
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader; bi.bmiHeader.biWidth = w; bi.bmiHeader.biHeight = h;
    bi.bmiHeader.biPlanes = 1; bi.bmiHeader.biBitCount = 24;
    int stride = (w * 3 + 3) & ~3;
    std::vector<unsigned char> px(stride * h);
    GetDIBits(dc, bmp, 0, h, px.data(), &bi, DIB_RGB_COLORS);
    BITMAPFILEHEADER fh = {};
    fh.bfType = 0x4D42; fh.bfOffBits = sizeof fh + sizeof bi.bmiHeader; fh.bfSize = fh.bfOffBits + px.size();
    FILE *f = fopen(path, "wb");
    fwrite(&fh, sizeof fh, 1, f); fwrite(&bi.bmiHeader, sizeof bi.bmiHeader, 1, f); fwrite(px.data(), px.size(), 1, f);
    fclose(f);
}
using Dump = DeviceTest;
TEST_F(Dump, Views)
{
    for (int hi = 0; hi < 2; hi++) {
        fake::SetScreen(hi ? 480 : 240, hi ? 640 : 320); IsLandscape();
        int s = hi ? 2 : 1, W = 215 * s, H = 225 * s;
        HDC dc = CreateCompatibleDC(nullptr);
        HBITMAP bmp = CreateBitmap(W, H, 1, 32, nullptr);
        HGDIOBJ old = SelectObject(dc, bmp);
        HFONT font = CreateFontW(-11 * s, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        SelectObject(dc, font);
        double tx[32] = {}, rx[32] = {};
        for (int h = 0; h < 24; h++) { tx[h] = 20000 + h * 3000; rx[h] = 90000 + (h % 5) * 40000; }
        int views[3][2] = {{USAGE_HOURLY, USAGE_VIEW_CHART}, {USAGE_HOURLY, USAGE_VIEW_TABLE}, {USAGE_DAILY, USAGE_VIEW_TABLE}};
        for (int v = 0; v < 3; v++) {
            PatBlt(dc, 0, 0, W, H, PATCOPY);
            RECT r = {0, 0, W, H}; FillRect(dc, &r, GetSysColorBrush(COLOR_BTNFACE));
            int rows = 0; for (int i = 0; i <= 24; i++) rows += tx[i] > 0 || rx[i] > 0;
            PaintUsageChart(dc, views[v][0], views[v][1], rows, 0, tx, rx, 250000, views[v][0] == USAGE_HOURLY ? 24 : 30);
            char path[64]; sprintf(path, "Z:\\tmp\\usage\\view%d_%d.bmp", v, hi);
            Save(bmp, dc, W, H, path);
        }
        SelectObject(dc, old); DeleteObject(bmp); DeleteObject(font); DeleteDC(dc);
    }
}
}
