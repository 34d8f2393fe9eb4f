// signal_view.cpp: the signal strength view: the tick's reading, its level word and the last 40 readings.
#include "platform/text.h"
#include "wireless/tools.h"
#include "wireless/signal_graph.h"
#include "item/item.h"
#include "resources/resource.h"

namespace {

// By the shared signal bands, no signal first.
const WCHAR *const kStatus[] = {L"No Signal", L"Very Low", L"Low", L"Good", L"Very Good"};

bool g_signalTimer;

void ShowSignal(HWND dialog)
{
    WCHAR text[32];
    FormatText(text, 32, L"%ddBm", g_item.signalDbm);
    SetDlgItemTextW(dialog, IDC_SIGNAL_STRENGTH, text);
    SetDlgItemTextW(dialog, IDC_SIGNAL_STATUS, kStatus[SignalBand(g_item.signalDbm)]);
    DrawSignalGraph(dialog);
}

} // namespace

void PaintSignalGraph(HDC surface, HDC background, const int *history)
{
    BitBlt(surface, 0, 0, SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT, background, 0, 0, SRCCOPY);
    HPEN pen = CreatePen(PS_SOLID, SIGNALGRAPH_PEN_WIDTH, RGB(0, 255, 0));
    if (!pen)
        return;
    HGDIOBJ old = SelectObject(surface, pen);
    for (int i = 0; i < SIGNALGRAPH_READINGS; i++) {
        int r = history[i];
        if (r <= -90)
            continue;
        int rise = r + 90 < SIGNALGRAPH_MAX_RISE ? r + 90 : SIGNALGRAPH_MAX_RISE;
        int x = SIGNALGRAPH_FIRST_X + SIGNALGRAPH_STEP * i;
        POINT line[2] = {{x, SIGNALGRAPH_BOTTOM}, {x, (SIGNALGRAPH_TOP_BASE - rise) * SIGNALGRAPH_Y_SCALE}};
        Polyline(surface, line, 2);
    }
    SelectObject(surface, old);
    DeleteObject(pen);
}

// Straight onto the window, outside any paint message: a repaint by the
// system wipes the graph until the next tick draws it again.
void DrawSignalGraph(HWND dialog)
{
    HDC dc = GetDC(dialog);
    if (!dc)
        return;
    HDC surface = CreateCompatibleDC(dc);
    HBITMAP bitmap = surface ? CreateCompatibleBitmap(dc, SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT) : nullptr;
    HBITMAP background = bitmap ? LoadBitmapW(g_item.instance, MAKEINTRESOURCEW(IDB_SIGNALGRAPH)) : nullptr;
    HDC image = background ? CreateCompatibleDC(dc) : nullptr;
    if (image) {
        HGDIOBJ oldBitmap = SelectObject(surface, bitmap);
        HGDIOBJ oldImage = SelectObject(image, background);
        PaintSignalGraph(surface, image, g_item.signalHistory);
        if (IsHiResScreen())
            StretchBlt(dc, 26, 178, 2 * SIGNALGRAPH_WIDTH, 2 * SIGNALGRAPH_HEIGHT, surface, 0, 0,
                       SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT, SRCCOPY);
        else
            BitBlt(dc, 13, 89, SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT, surface, 0, 0, SRCCOPY);
        SelectObject(image, oldImage);
        SelectObject(surface, oldBitmap);
        DeleteDC(image);
    }
    if (background)
        DeleteObject(background);
    if (bitmap)
        DeleteObject(bitmap);
    if (surface)
        DeleteDC(surface);
    ReleaseDC(dialog, dc);
}

INT_PTR CALLBACK SignalViewDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        PlaceToolDialog(dialog, true);
        SetWindowTextW(dialog, L"Signal");   // found by its title from outside; shown nowhere
        ShowSignal(dialog);
        g_signalTimer = SetTimer(dialog, SIGNAL_TIMER_ID, SIGNAL_PERIOD_MS, nullptr) != 0;
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            if (g_signalTimer)
                KillTimer(dialog, SIGNAL_TIMER_ID);
            g_signalTimer = false;
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    case WM_TIMER:
        if (wParam == SIGNAL_TIMER_ID) {
            ShowSignal(dialog);
            return TRUE;
        }
        break;
    }
    return FALSE;
}
