// usagechart.cpp: the usage view: bar chart on a fixed scale ladder, or a paged table.
#include "platform/text.h"
#include "charts/charts.h"
#include "charts/usage_layout.h"
#include "item/item.h"
#include "platform/platform.h"
#include "resources/resource.h"
#include "trafficlog/reader.h"

#include <stdio.h>

namespace {

// The axis counts a megabyte as 1,000 KB and a gigabyte as 1,000 of those,
// and only the 5 MB row drops the decimal place: the labels stay as users
// have always read them.
const UsageScale kLadder[USAGE_SCALE_ROWS] = {
    {1024, 1024, {L"1.0KB", L"0.8KB", L"0.6KB", L"0.4KB", L"0.2KB"}},
    {10240, 10240, {L"10KB", L"8KB", L"6KB", L"4KB", L"2KB"}},
    {51200, 51200, {L"50KB", L"40KB", L"30KB", L"20KB", L"10KB"}},
    {102400, 102400, {L"100KB", L"80KB", L"60KB", L"40KB", L"20KB"}},
    {204800, 204800, {L"200KB", L"160KB", L"120KB", L"80KB", L"40KB"}},
    {307200, 307200, {L"300KB", L"240KB", L"180KB", L"120KB", L"60KB"}},
    {409600, 409600, {L"400KB", L"320KB", L"240KB", L"160KB", L"80KB"}},
    {512000, 512000, {L"500KB", L"400KB", L"300KB", L"200KB", L"100KB"}},
    {614400, 614400, {L"600KB", L"480KB", L"360KB", L"240KB", L"120KB"}},
    {716800, 716800, {L"700KB", L"560KB", L"420KB", L"280KB", L"140KB"}},
    {819200, 819200, {L"800KB", L"640KB", L"480KB", L"320KB", L"160KB"}},
    {921600, 921600, {L"900KB", L"720KB", L"540KB", L"360KB", L"180KB"}},
    {1024000, 1024000, {L"1.0MB", L"0.8MB", L"0.6MB", L"0.4MB", L"0.2MB"}},
    {2048000, 2048000, {L"2.0MB", L"1.6MB", L"1.2MB", L"0.8MB", L"0.4MB"}},
    {3072000, 3072000, {L"3.0MB", L"2.4MB", L"1.8MB", L"1.2MB", L"0.6MB"}},
    {4096000, 4096000, {L"4.0MB", L"3.2MB", L"2.4MB", L"1.6MB", L"0.8MB"}},
    {5120000, 5120000, {L"5MB", L"4MB", L"3MB", L"2MB", L"1MB"}},
    {6144000, 6144000, {L"6.0MB", L"4.8MB", L"3.6MB", L"2.4MB", L"1.2MB"}},
    {7168000, 7168000, {L"7.0MB", L"5.6MB", L"4.2MB", L"2.8MB", L"1.4MB"}},
    {8192000, 8192000, {L"8.0MB", L"6.4MB", L"4.8MB", L"3.2MB", L"1.6MB"}},
    {9216000, 9216000, {L"9.0MB", L"7.2MB", L"5.4MB", L"3.6MB", L"1.8MB"}},
    {10240000, 10240000, {L"10MB", L"8MB", L"6MB", L"4MB", L"2MB"}},
    {20480000, 20480000, {L"20MB", L"16MB", L"12MB", L"8MB", L"4MB"}},
    {30720000, 30720000, {L"30MB", L"24MB", L"18MB", L"12MB", L"6MB"}},
    {40960000, 40960000, {L"40MB", L"32MB", L"24MB", L"16MB", L"8MB"}},
    {51200000, 51200000, {L"50MB", L"40MB", L"30MB", L"20MB", L"10MB"}},
    {61440000, 61440000, {L"60MB", L"48MB", L"36MB", L"24MB", L"12MB"}},
    {71680000, 71680000, {L"70MB", L"56MB", L"42MB", L"28MB", L"14MB"}},
    {81920000, 81920000, {L"80MB", L"64MB", L"48MB", L"32MB", L"16MB"}},
    {92160000, 92160000, {L"90MB", L"72MB", L"54MB", L"36MB", L"18MB"}},
    {102400000, 102400000, {L"100MB", L"80MB", L"60MB", L"40MB", L"20MB"}},
    {1024000000, 1024000000, {L"1.0GB", L"0.8GB", L"0.6GB", L"0.4GB", L"0.2GB"}},
    {0, 2048000000, {L">2GB", L"1.6GB", L"1.2GB", L"0.8GB", L"0.4GB"}},   // no upper bound
};

const int kColumns[4][2] = {{USAGE_COL0_LEFT, USAGE_COL0_RIGHT},
                            {USAGE_COL1_LEFT, USAGE_COL1_RIGHT},
                            {USAGE_COL2_LEFT, USAGE_COL2_RIGHT},
                            {USAGE_COL3_LEFT, USAGE_COL3_RIGHT}};

int Scale()
{
    return IsHiResScreen() ? 2 : 1;
}

RECT Scaled(int left, int top, int right, int bottom, int s)
{
    RECT r = {left * s, top * s, right * s, bottom * s};
    return r;
}

// At their natural size, given: the device reads a size of 0 as its system
// icon size and would stretch them over the header's other buttons.
void DrawIconAt(HDC dc, int id, int x, int y, int s)
{
    HICON icon = static_cast<HICON>(platform::LoadImageW(g_item.instance, MAKEINTRESOURCEW(id), IMAGE_ICON,
                                                         USAGE_ICON_SIZE * s, USAGE_ICON_SIZE * s, 0));
    if (!icon)
        return;
    DrawIconEx(dc, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
}

// Draws a bitmap resource stretched over the rectangle (logical units).
void DrawBitmapAt(HDC dc, int id, int x, int y, int w, int h, int s)
{
    HBITMAP bitmap = static_cast<HBITMAP>(
        LoadImageW(g_item.instance, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR));
    if (!bitmap)
        return;
    BITMAP info;
    HDC memory = CreateCompatibleDC(dc);
    if (memory && GetObjectW(bitmap, sizeof info, &info)) {
        HGDIOBJ old = SelectObject(memory, bitmap);
        StretchBlt(dc, x * s, y * s, w * s, h * s, memory, 0, 0, info.bmWidth, info.bmHeight, SRCCOPY);
        SelectObject(memory, old);
    }
    if (memory)
        DeleteDC(memory);
    DeleteObject(bitmap);
}

// Three one-pixel lines up from the base line; the width is not scaled.
void DrawBar(HDC dc, HPEN pen, int x, int base, int top)
{
    SelectObject(dc, pen);
    for (int i = 0; i < USAGE_BAR_WIDTH; i++) {
        MoveToEx(dc, x + i, base, nullptr);
        LineTo(dc, x + i, top);
    }
}

void PaintBars(HDC dc, int mode, const double *transmitted, const double *received, double maximum,
               int slots, int s)
{
    DrawBitmapAt(dc, mode == USAGE_HOURLY ? IDB_USAGE_CHART_HOURLY : IDB_USAGE_CHART_DAILY, USAGE_CHART_X,
                 USAGE_CHART_Y, USAGE_CHART_W, USAGE_CHART_H, s);

    const UsageScale *scale = ChooseUsageScale(maximum);
    for (int i = 0; i < 5; i++) {
        int top = USAGE_LABEL_TOP + i * USAGE_LABEL_STEP;
        RECT r = Scaled(USAGE_LABEL_LEFT, top, USAGE_LABEL_RIGHT, top + USAGE_LABEL_HEIGHT, s);
        DrawTextW(dc, scale->labels[i], -1, &r, DT_RIGHT);
    }

    // The pens are the item's; should its cache be cleared meanwhile, stand-ins keep the colours.
    HPEN red = g_item.redPen, blue = g_item.bluePen, ownRed = nullptr, ownBlue = nullptr;
    if (!red)
        red = ownRed = CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
    if (!blue)
        blue = ownBlue = CreatePen(PS_SOLID, 1, RGB(0, 0, 255));
    HGDIOBJ oldPen = GetCurrentObject(dc, OBJ_PEN);

    int baseLine = s == 2 ? USAGE_BASE_HIRES : USAGE_BASE;
    int first = mode == USAGE_HOURLY ? 0 : 1;
    int last = mode == USAGE_HOURLY ? 23 : slots;
    for (int slot = first; slot <= last && slot < SERIES_SLOTS; slot++) {
        int pt = UsageBarPercent(transmitted[slot], scale->fullScale);
        int pr = UsageBarPercent(received[slot], scale->fullScale);
        if (pt == 0 && pr == 0)
            continue;
        // Hour 0 already stands one step in; day 1 one step in too.
        int step = mode == USAGE_HOURLY ? (slot + 1) * USAGE_HOURLY_STEP : slot * USAGE_DAILY_STEP;
        int x = (USAGE_CHART_X + step) * s;
        int base = (baseLine + USAGE_CHART_Y) * s;
        // The taller bar first, the shorter in front of it; equal ones once, red.
        if (pt >= pr) {
            DrawBar(dc, red, x, base, (baseLine - pt + USAGE_CHART_Y) * s);
            if (pr < pt && pr > 0)
                DrawBar(dc, blue, x, base, (baseLine - pr + USAGE_CHART_Y) * s);
        } else {
            DrawBar(dc, blue, x, base, (baseLine - pr + USAGE_CHART_Y) * s);
            if (pt > 0)
                DrawBar(dc, red, x, base, (baseLine - pt + USAGE_CHART_Y) * s);
        }
    }

    SelectObject(dc, oldPen);
    if (ownRed)
        DeleteObject(ownRed);
    if (ownBlue)
        DeleteObject(ownBlue);
}

void PaintTable(HDC dc, int mode, int rowsWithData, int page, const double *transmitted,
                const double *received, int slots, int s)
{
    bool landscape = g_item.screenWidth >= g_item.screenHeight;
    DrawBitmapAt(dc, mode == USAGE_HOURLY ? IDB_USAGE_TABLE_HOURLY : IDB_USAGE_TABLE_DAILY, USAGE_TABLE_X,
                 USAGE_TABLE_Y, USAGE_TABLE_W, USAGE_TABLE_H, s);
    if (landscape)
        DrawBitmapAt(dc, IDB_USAGE_PAGES, USAGE_PAGES_WIDE_X, USAGE_PAGES_WIDE_Y, USAGE_PAGES_W,
                     USAGE_PAGES_H, s);
    else
        DrawBitmapAt(dc, IDB_USAGE_PAGES, USAGE_PAGES_X, USAGE_PAGES_Y, USAGE_PAGES_W, USAGE_PAGES_H, s);

    // Listed from slot 1 in both modes: hour 0 counts towards the pages but
    // never gets a row of its own.
    int firstRow = page * USAGE_ROWS_PER_PAGE, row = 0;
    for (int slot = 1; slot <= slots && slot < SERIES_SLOTS; slot++) {
        if (transmitted[slot] <= 0 && !(received[slot] > 0))
            continue;
        if (row >= firstRow + USAGE_ROWS_PER_PAGE)
            break;
        if (row >= firstRow) {
            int top = USAGE_ROW_TOP + (row - firstRow) * USAGE_ROW_STEP;
            WCHAR texts[4][BYTE_COUNT_CHARS];
            FormatUsageSlot(mode, slot, g_item.amPmFormat, texts[0], BYTE_COUNT_CHARS);
            FormatByteCount(transmitted[slot], texts[1], BYTE_COUNT_CHARS);
            FormatByteCount(received[slot], texts[2], BYTE_COUNT_CHARS);
            FormatByteCount(transmitted[slot] + received[slot], texts[3], BYTE_COUNT_CHARS);
            for (int c = 0; c < 4; c++) {
                RECT r = Scaled(kColumns[c][0], top, kColumns[c][1], top + USAGE_ROW_HEIGHT, s);
                DrawTextW(dc, texts[c], -1, &r, 0);
            }
        }
        row++;
    }

    WCHAR indicator[32];
    FormatUsagePages(rowsWithData, page, indicator, 32);
    RECT r = landscape ? Scaled(USAGE_INDICATOR_WIDE_LEFT, USAGE_INDICATOR_WIDE_TOP, USAGE_INDICATOR_WIDE_RIGHT,
                               USAGE_INDICATOR_WIDE_BOTTOM, s)
                      : Scaled(USAGE_INDICATOR_LEFT, USAGE_INDICATOR_TOP, USAGE_INDICATOR_RIGHT,
                               USAGE_INDICATOR_BOTTOM, s);
    DrawTextW(dc, indicator, -1, &r, 0);
}

} // namespace

const UsageScale *ChooseUsageScale(double maximum)
{
    for (int i = 0; i < USAGE_SCALE_ROWS - 1; i++) {
        if (maximum < kLadder[i].below)
            return &kLadder[i];
    }
    return &kLadder[USAGE_SCALE_ROWS - 1];
}

int UsageBarPercent(double value, double fullScale)
{
    double p = value * (1 / fullScale) * 100;
    // Held before the conversion too, so that no value overflows it.
    if (!(p > 0))
        return 0;
    if (p >= 100)
        return 100;
    return (int)p;
}

int UsagePageCount(int rowsWithData)
{
    return (rowsWithData + USAGE_ROWS_PER_PAGE - 1) / USAGE_ROWS_PER_PAGE;
}

LPWSTR FormatUsagePages(int rowsWithData, int page, LPWSTR text, size_t size)
{
    int pages = UsagePageCount(rowsWithData);
    if (pages == 0)
        FormatText(text, size, L"0/0");
    else
        FormatText(text, size, L"%d/%d", page + 1, pages);
    return text;
}

LPWSTR FormatUsageSlot(int mode, int slot, bool amPm, LPWSTR text, size_t size)
{
    if (mode != USAGE_HOURLY)
        FormatText(text, size, L"%d", slot);
    else if (!amPm)
        FormatText(text, size, L"%02d:00", slot);
    else if (slot == 0)
        FormatText(text, size, L"12 am");
    else if (slot < 12)
        FormatText(text, size, L"%02d am", slot);
    else if (slot == 12)
        FormatText(text, size, L"12 pm");
    else
        FormatText(text, size, L"%02d pm", slot - 12);
    return text;
}

void PaintUsageChart(HDC dc, int mode, int view, int rowsWithData, int page,
                     const double *transmitted, const double *received, double maximum, int slots)
{
    if (!dc)
        return;
    int s = Scale();
    bool hiRes = s == 2;
    DrawIconAt(dc, hiRes ? IDI_USAGE_TABLE_HIRES : IDI_USAGE_TABLE, USAGE_ICON_TABLE_X * s, USAGE_ICON_Y * s, s);
    DrawIconAt(dc, hiRes ? IDI_USAGE_CHART_HIRES : IDI_USAGE_CHART, USAGE_ICON_CHART_X * s, USAGE_ICON_Y * s, s);
    DrawIconAt(dc, hiRes ? IDI_USAGE_EXPORT_HIRES : IDI_USAGE_EXPORT, USAGE_ICON_EXPORT_X * s, USAGE_ICON_Y * s, s);

    // The dialog's own face at the chart's height; the device has only the
    // indirect form of font creation.
    LOGFONTW logFont = {};
    logFont.lfHeight = hiRes ? 22 : 12;
    logFont.lfWeight = FW_NORMAL;
    logFont.lfCharSet = DEFAULT_CHARSET;
    logFont.lfOutPrecision = OUT_DEFAULT_PRECIS;
    logFont.lfClipPrecision = CLIP_DEFAULT_PRECIS;
    logFont.lfQuality = DEFAULT_QUALITY;
    logFont.lfPitchAndFamily = DEFAULT_PITCH | FF_DONTCARE;
    GetTextFaceW(dc, LF_FACESIZE, logFont.lfFaceName);
    HFONT font = CreateFontIndirectW(&logFont);
    HGDIOBJ oldFont = font ? SelectObject(dc, font) : nullptr;
    COLORREF oldColor = SetTextColor(dc, RGB(0, 0, 0));
    int oldMode = SetBkMode(dc, TRANSPARENT);

    if (view == USAGE_VIEW_CHART)
        PaintBars(dc, mode, transmitted, received, maximum, slots, s);
    else if (view == USAGE_VIEW_TABLE)
        PaintTable(dc, mode, rowsWithData, page, transmitted, received, slots, s);

    SetBkMode(dc, oldMode);
    SetTextColor(dc, oldColor);
    if (font) {
        SelectObject(dc, oldFont);
        DeleteObject(font);
    }
}
