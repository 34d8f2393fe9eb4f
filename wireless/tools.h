// tools.h: the wireless tools' dialogs (card details, signal view, 802.11 scanner) and their pieces.
#pragma once

#include <windows.h>

INT_PTR CALLBACK CardDetailsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK SignalViewDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK ScannerDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Card details: the adapter's radio settings into the dialog's value
// controls, once; 0 when there is no wireless adapter.
int FillWirelessDetails(HWND dialog);

// Signal view: the history's graph on `surface` (SIGNALGRAPH_WIDTH x
// SIGNALGRAPH_HEIGHT) over the background selected in `background`; and the
// whole paint, straight onto the dialog's window.
void PaintSignalGraph(HDC surface, HDC background, const int *history);
void DrawSignalGraph(HWND dialog);

#define SIGNAL_TIMER_ID    13
#define SIGNAL_PERIOD_MS   1500
#define SCANNER_TIMER_ID   7
#define SCANNER_PERIOD_MS  5000
#define SCANNER_ENTRIES    48

// One access point heard since the scanner opened; its list row is its index.
struct AccessPoint {
    char ssid[33];
    BYTE bssid[6];
    int channel;
    DWORD privacy;
    int rssi;           // NO_SIGNAL when it was missing from the latest list
    DWORD networkType;
    DWORD mode;
    BYTE rates[8];
    DWORD seen;
    int row;
};

struct ScannerState {
    AccessPoint entries[SCANNER_ENTRIES];
    int count;
    char shownSsid[33];
    BYTE shownBssid[6];
    bool timerRunning;
};
extern ScannerState g_scanner;

// One scan-and-read cycle; true when the wireless device was usable.
bool RefreshAccessPoints(HWND dialog);

// The supported-rates text ("1,2,5.5,11 Mbps") of up to 8 rate bytes, the
// basic-rate bit ignored; false, with `text` untouched, when there are none.
bool FormatRates(const BYTE *rates, WCHAR *text, int chars);
// The scanner's image for a level and privacy: 0-9, open and encrypted
// alternating from no signal up.
int AccessPointImage(int rssi, DWORD privacy);
