// livegraph.cpp: the live traffic graph dialog, drawn from the tick's sample rings.
#include "charts/livegraph.h"
#include "charts/charts.h"
#include "item/item.h"
#include "resources/resource.h"

namespace {

// The ladder's units change at 1,000 KB: below, a step is 1,024 bytes; above,
// a megabyte step is 1,024,000 bytes. Its odd texts ("5MB", ">10MB") are
// what users of the graph know and stay as they are.
const LiveGraphScale kLadder[] = {
    {1024, {L"1.0KB", L"0.8KB", L"0.6KB", L"0.4KB", L"0.2KB"}},
    {10240, {L"10KB", L"8KB", L"6KB", L"4KB", L"2KB"}},
    {102400, {L"100KB", L"80KB", L"60KB", L"40KB", L"20KB"}},
    {204800, {L"200KB", L"160KB", L"120KB", L"80KB", L"40KB"}},
    {307200, {L"300KB", L"240KB", L"180KB", L"120KB", L"60KB"}},
    {409600, {L"400KB", L"320KB", L"240KB", L"160KB", L"80KB"}},
    {512000, {L"500KB", L"400KB", L"300KB", L"200KB", L"100KB"}},
    {614400, {L"600KB", L"480KB", L"360KB", L"240KB", L"120KB"}},
    {716800, {L"700KB", L"560KB", L"420KB", L"280KB", L"140KB"}},
    {819200, {L"800KB", L"640KB", L"480KB", L"320KB", L"160KB"}},
    {921600, {L"900KB", L"720KB", L"540KB", L"360KB", L"180KB"}},
    {1024000, {L"1.0MB", L"0.8MB", L"0.6MB", L"0.4MB", L"0.2MB"}},
    {2048000, {L"2.0MB", L"1.6MB", L"1.2MB", L"0.8MB", L"0.4MB"}},
    {3072000, {L"3.0MB", L"2.4MB", L"1.8MB", L"1.2MB", L"0.6MB"}},
    {4096000, {L"4.0MB", L"3.2MB", L"2.4MB", L"1.6MB", L"0.8MB"}},
    {5120000, {L"5MB", L"4MB", L"3MB", L"2MB", L"1MB"}},
    {6144000, {L"6.0MB", L"4.8MB", L"3.6MB", L"2.4MB", L"1.2MB"}},
    {7168000, {L"7.0MB", L"5.6MB", L"4.2MB", L"2.8MB", L"1.4MB"}},
    {8192000, {L"8.0MB", L"6.4MB", L"4.8MB", L"3.2MB", L"1.6MB"}},
    {9216000, {L"9.0MB", L"7.2MB", L"5.4MB", L"3.6MB", L"1.8MB"}},
    {10240000, {L"10MB", L"8MB", L"6MB", L"4MB", L"2MB"}},
};
// Past 10 MB the full scale jumps a hundredfold while the lower labels stay.
const LiveGraphScale kLadderTop = {1024000000, {L">10MB", L"8MB", L"6MB", L"4MB", L"2MB"}};

// The dialog's own drawing objects, alive from its opening to its closing command.
struct LiveGraphLine {
    DWORD value;
    HPEN pen;
};

struct GraphDialogState {
    HPEN transmittedPen, receivedPen;
    bool timerRunning;
};
GraphDialogState g_graph;

int Scale()
{
    return IsHiResScreen() ? 2 : 1;
}

// One tick's column: the larger line first, so the smaller shows in front;
// on a tie red goes first and blue in front.
void DrawColumn(HDC dc, int x, DWORD transmitted, DWORD received, DWORD fullScale,
                HPEN transmittedPen, HPEN receivedPen, int s)
{
    LiveGraphLine lines[2] = {{transmitted, transmittedPen}, {received, receivedPen}};
    if (received > transmitted) {
        lines[0].value = received;
        lines[0].pen = receivedPen;
        lines[1].value = transmitted;
        lines[1].pen = transmittedPen;
    }
    for (int i = 0; i < 2; i++) {
        const LiveGraphLine &line = lines[i];
        DWORD p = LiveGraphColumnHeight(line.value, fullScale);
        if (p == 0)
            continue;
        POINT points[2] = {{x * s, LIVEGRAPH_BASELINE * s}, {x * s, (LIVEGRAPH_BASELINE - (int)p) * s}};
        HGDIOBJ old = SelectObject(dc, line.pen);
        Polyline(dc, points, 2);
        SelectObject(dc, old);
    }
}

void PaintGraph(HWND dialog)
{
    int s = Scale();
    HDC dc = GetDC(dialog);
    if (!dc)
        return;
    HDC surface = CreateCompatibleDC(dc);
    HDC imageDC = CreateCompatibleDC(dc);
    HBITMAP background = LoadBitmapW(g_item.instance, MAKEINTRESOURCEW(IDB_LIVEGRAPH));
    HBITMAP bitmap = CreateCompatibleBitmap(dc, LIVEGRAPH_WIDTH * s, LIVEGRAPH_HEIGHT * s);
    if (!surface || !imageDC || !background || !bitmap) {
        // Nothing is validated: the next paint message tries again.
        if (bitmap)
            DeleteObject(bitmap);
        if (background)
            DeleteObject(background);
        if (imageDC)
            DeleteDC(imageDC);
        if (surface)
            DeleteDC(surface);
        ReleaseDC(dialog, dc);
        return;
    }
    HGDIOBJ oldBitmap = SelectObject(surface, bitmap);
    HGDIOBJ oldImage = SelectObject(imageDC, background);

    PAINTSTRUCT ps;
    BeginPaint(dialog, &ps);
    RECT client;
    GetClientRect(dialog, &client);
    DrawLiveGraph(surface, imageDC, client, g_graph.transmittedPen, g_graph.receivedPen, s);
    // One copy per paint: the two-second refresh does not flicker.
    BitBlt(dc, LIVEGRAPH_SURFACE_X * s, LIVEGRAPH_SURFACE_Y * s, LIVEGRAPH_WIDTH * s,
           LIVEGRAPH_HEIGHT * s, surface, 0, 0, SRCCOPY);
    ReleaseDC(dialog, dc);

    SelectObject(imageDC, oldImage);
    SelectObject(surface, oldBitmap);
    DeleteDC(surface);
    DeleteDC(imageDC);
    DeleteObject(background);
    DeleteObject(bitmap);
    EndPaint(dialog, &ps);
}

void OpenGraph(HWND dialog)
{
    PlaceToolDialog(dialog, false);

    g_graph.transmittedPen = CreatePen(PS_SOLID, 3, RGB(255, 0, 0));
    g_graph.receivedPen = CreatePen(PS_SOLID, 3, RGB(0, 0, 255));
    if (!g_graph.timerRunning && SetTimer(dialog, LIVEGRAPH_TIMER_ID, LIVEGRAPH_PERIOD_MS, nullptr))
        g_graph.timerRunning = true;
}

void CloseGraph(HWND dialog, int id)
{
    if (g_graph.timerRunning) {
        KillTimer(dialog, LIVEGRAPH_TIMER_ID);
        g_graph.timerRunning = false;
    }
    if (g_graph.transmittedPen) {
        DeleteObject(g_graph.transmittedPen);
        g_graph.transmittedPen = nullptr;
    }
    if (g_graph.receivedPen) {
        DeleteObject(g_graph.receivedPen);
        g_graph.receivedPen = nullptr;
    }
    EndDialog(dialog, id);
}

} // namespace

const LiveGraphScale &ChooseLiveGraphScale(DWORD largest)
{
    for (size_t i = 0; i < sizeof kLadder / sizeof kLadder[0]; i++) {
        if (largest < kLadder[i].fullScale)
            return kLadder[i];
    }
    return kLadderTop;
}

DWORD LiveGraphColumnHeight(DWORD value, DWORD fullScale)
{
    DWORD p = (DWORD)(value * 100u) / fullScale;
    return p > 100 ? 100 : p;
}

void DrawLiveGraph(HDC surface, HDC imageDC, const RECT &client, HPEN transmittedPen,
                   HPEN receivedPen, int s)
{
    FillRect(surface, &client, (HBRUSH)GetStockObject(WHITE_BRUSH));
    StretchBlt(surface, LIVEGRAPH_IMAGE_X * s, LIVEGRAPH_IMAGE_Y * s, LIVEGRAPH_IMAGE_WIDTH * s,
               LIVEGRAPH_IMAGE_HEIGHT * s, imageDC, 0, 0, LIVEGRAPH_IMAGE_WIDTH, LIVEGRAPH_IMAGE_HEIGHT,
               SRCCOPY);

    LOGFONTW lf = {};
    GetTextFaceW(surface, LF_FACESIZE, lf.lfFaceName);
    lf.lfHeight = s == 2 ? 22 : 12;
    lf.lfWeight = FW_NORMAL;
    HFONT font = CreateFontIndirectW(&lf);
    HGDIOBJ oldFont = SelectObject(surface, font);

    int count = g_item.sampleCount;
    if (count >= 1) {
        if (count > RING_SIZE)
            count = RING_SIZE;
        DWORD largest = 0;
        for (int i = 0; i < count; i++) {
            if (g_item.outDeltas[i] > largest)
                largest = g_item.outDeltas[i];
            if (g_item.inDeltas[i] > largest)
                largest = g_item.inDeltas[i];
        }
        const LiveGraphScale &scale = ChooseLiveGraphScale(largest);

        if (count < RING_SIZE) {
            // Oldest first from index 0; the newest always stands at the right.
            for (int i = 0; i < count; i++) {
                int x = (i - count + 25) * LIVEGRAPH_COLUMN_STEP;
                DrawColumn(surface, x, g_item.outDeltas[i], g_item.inDeltas[i], scale.fullScale,
                           transmittedPen, receivedPen, s);
            }
        } else {
            // Full ring: from the oldest entry to the end, then round to the newest.
            int x = LIVEGRAPH_FIRST_COLUMN;
            int start = g_item.ringStart < 0 ? 0 : g_item.ringStart;
            for (int i = start; i < RING_SIZE; i++, x += LIVEGRAPH_COLUMN_STEP)
                DrawColumn(surface, x, g_item.outDeltas[i], g_item.inDeltas[i], scale.fullScale,
                           transmittedPen, receivedPen, s);
            if (start != 0) {
                for (int i = 0; i <= g_item.ringIndex && i < RING_SIZE; i++, x += LIVEGRAPH_COLUMN_STEP)
                    DrawColumn(surface, x, g_item.outDeltas[i], g_item.inDeltas[i], scale.fullScale,
                               transmittedPen, receivedPen, s);
            }
        }

        SetTextColor(surface, RGB(0, 0, 0));
        for (int j = 0; j < LIVEGRAPH_LABELS; j++) {
            int top = LIVEGRAPH_TOP_LEVEL - 7 + LIVEGRAPH_LEVEL_STEP * j;
            RECT box = {LIVEGRAPH_LABEL_LEFT * s, top * s, LIVEGRAPH_LABEL_RIGHT * s, (top + 15) * s};
            DrawTextW(surface, scale.labels[j], -1, &box, DT_RIGHT);
        }
    }

    SelectObject(surface, oldFont);
    DeleteObject(font);
}

INT_PTR CALLBACK LiveGraphDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        OpenGraph(dialog);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            CloseGraph(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    case WM_TIMER:
        if (wParam == LIVEGRAPH_TIMER_ID) {
            InvalidateRect(dialog, nullptr, FALSE);
            return TRUE;
        }
        break;
    case WM_PAINT:
        PaintGraph(dialog);
        return TRUE;
    }
    return FALSE;
}
