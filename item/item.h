// item.h: the Today item's global state and settings, and its entry points.
#pragma once

#include <windows.h>
#include "platform/today.h"
#include "wireless/wireless.h"

#define QUORVANE_CLASS L"QUORVANECLASS"
#define QUORVANE_KEY L"Software\\Microsoft\\Today\\Items\\Quorvane"

#define RING_SIZE 20
#define UNKNOWN_INTERFACE 0xFFFFFFFFu
#define SAMPLE_TIMER_ID 11
#define SAMPLE_PERIOD_MS 2000

// The module's single global state record. Every handle in it is owned by it
// and made or freed only by start-up, the cache messages and the tick.
struct ItemState {
    HINSTANCE instance;
    int screenWidth, screenHeight;
    DWORD xLocation;
    bool showTaskbarIcon;
    bool amPmFormat;
    WCHAR adapterName[128];
    DWORD interfaceIndex;
    WCHAR dataFolder[260];
    int sampleCount;
    int ringIndex, ringStart;
    DWORD outDeltas[RING_SIZE], inDeltas[RING_SIZE];
    DWORD lastOutOctets, lastInOctets;
    int signalDbm;                 // SignalDbm
    int lastDrawnSignal;
    int signalHistory[SIGNAL_HISTORY_SIZE];   // SignalHistory, oldest first
    bool signalTiming;
    bool timerRunning;
    bool gdiReady;
    HDC surfaceDC;                 // the graph's off-screen surface
    HBITMAP surfaceBitmap;
    HGDIOBJ surfaceOldBitmap;
    HPEN redPen, bluePen, silverPen;
    HBITMAP taskbarBackground;     // the clean screen under the taskbar icon
    HBITMAP iconBackground;        // the screen under the icon as the tick last saw it
};

// The registry values of the item, as last read or written.
struct ItemSettings {
    DWORD XLocation;
    DWORD TIcon;
    DWORD TFormat;
    WCHAR Adapter[128];
    WCHAR InstallDir[260];
};

extern ItemState g_item;
extern ItemSettings g_settings;

// Registry helpers on the item's key; each opens and closes the key itself.
bool ReadSettingString(LPCWSTR name, LPWSTR value, DWORD bytes);
bool ReadSettingDword(LPCWSTR name, DWORD *value);
bool WriteSettingString(LPCWSTR name, LPCWSTR value);
bool WriteSettingDword(LPCWSTR name, DWORD value);

// Module attach and detach (DllMain calls these; tests call them directly).
BOOL AttachModule(HINSTANCE instance);
void DetachModule();
void InitializeItemState();

bool IsHiResScreen();
bool IsLandscape();
// Where a tool dialog goes: centred on the screen and one pixel larger each
// way; with `belowTaskbar` its top stays under the "HHTaskBar" window (26
// pixels when there is none).
void PlaceToolDialog(HWND dialog, bool belowTaskbar);

LRESULT CALLBACK ItemWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT QueryRefreshCache(HWND window, TODAYLISTITEM *item);
LRESULT ClearCache(HWND window);

// Pieces owned by other files of the item.
bool ChooseAdapter();
void CaptureTaskbarBackground();
void DrawStatusStrip(HWND window, HDC dc, bool fullPaint);
void OnPaint(HWND window);
void OnTap(HWND window, LPARAM position);
void OnTick(HWND window);

// The sampling tick's parts (tick.cpp).
bool ReadInterfaceCounters(DWORD *transmitted, DWORD *received);
// The signal level 0 (none) .. 4 (very good) of a reading in dBm, shared by
// every picture of the signal.
int SignalBand(int dbm);
int TaskbarIconId();

// The options page's move of the taskbar icon (taskicon.cpp).
void EraseTaskbarIcon();

extern "C" {
HWND WINAPI InitializeCustomItem(TODAYLISTITEM *item, HWND parent);
INT_PTR WINAPI CustomItemOptionsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
}
