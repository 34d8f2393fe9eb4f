// wireless_screens_test.cpp: the three wireless tools filled from the fake driver, shown on real GDI and captured.
//
// Set QUORVANE_SHOTS to a folder to keep the pictures (the README's come from here).
#include "tests/support.h"
#include "host/png.h"
#include "platform/fake/fake_wireless.h"
#include "resources/resource.h"
#include "wireless/tools.h"

#include <commctrl.h>
#include <stdlib.h>
#include <string>
#include <vector>

namespace {

typedef std::vector<BYTE> Bytes;

void Pump(int ms)
{
    DWORD start = GetTickCount();
    do {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        Sleep(10);
    } while (GetTickCount() - start < (DWORD)ms);
}

// What the window shows on the screen, as top-down BGRX rows.
std::vector<BYTE> Capture(HWND window, int *w, int *h)
{
    RECT rc;
    GetWindowRect(window, &rc);
    *w = rc.right - rc.left;
    *h = rc.bottom - rc.top;
    Canvas canvas;
    canvas.Make(*w, *h);
    HDC screen = GetDC(nullptr);
    BitBlt(canvas.dc, 0, 0, *w, *h, screen, rc.left, rc.top, SRCCOPY);
    ReleaseDC(nullptr, screen);
    std::vector<BYTE> pixels;
    for (COLORREF c : canvas.Pixels()) {
        BYTE bgrx[4] = {GetBValue(c), GetGValue(c), GetRValue(c), 0};
        pixels.insert(pixels.end(), bgrx, bgrx + 4);
    }
    canvas.Free();
    return pixels;
}

// How many pixels of the picture are (near) this colour.
int Count(const std::vector<BYTE> &bgrx, COLORREF c)
{
    int n = 0;
    for (size_t i = 0; i + 3 < bgrx.size(); i += 4)
        n += abs(bgrx[i + 2] - GetRValue(c)) < 40 && abs(bgrx[i + 1] - GetGValue(c)) < 40 &&
             abs(bgrx[i] - GetBValue(c)) < 40;
    return n;
}

void Keep(const std::vector<BYTE> &bgrx, int w, int h, const wchar_t *name)
{
    const char *folder = getenv("QUORVANE_SHOTS");
    if (!folder || !*folder)
        return;
    std::wstring path(folder, folder + strlen(folder));
    path += L"\\";
    path += name;
    EXPECT_TRUE(WriteImageFile(path.c_str(), w, h, bgrx.data())) << "cannot write the picture";
}

Bytes Entry(BYTE last, const char *ssid, int rssi, DWORD privacy, DWORD kHz, DWORD type, const BYTE *rates)
{
    Bytes e(104, 0);
    const DWORD fields[][2] = {{0, 104}, {12, (DWORD)strlen(ssid)}, {48, privacy}, {52, (DWORD)rssi},
                               {56, type}, {64, 100}, {72, kHz}, {92, 1}};
    for (auto &f : fields)
        memcpy(&e[f[0]], &f[1], 4);
    const BYTE mac[6] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, last};
    memcpy(&e[4], mac, 6);
    memcpy(&e[16], ssid, strlen(ssid));
    memcpy(&e[96], rates, 8);
    return e;
}

// A handheld in a small office: its own network on two access points, a
// neighbour, a hotspot at the edge of range and an old open one.
void Office()
{
    fake::SetWirelessAdapter(L"TIACXWLN1");
    const BYTE g[8] = {0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24}, b[8] = {0x82, 0x84, 0x0B, 0x16};
    const Bytes entries[] = {Entry(0x01, "office", -52, 1, 2437000, 3, g), Entry(0x02, "office", -69, 1, 2412000, 3, g),
                             Entry(0x03, "neighbours", -77, 1, 2462000, 3, g),
                             Entry(0x04, "StationCafe", -86, 0, 2462000, 1, b),
                             Entry(0x05, "linksys", -93, 0, 24770, 1, b)};
    Bytes list(4, 0);
    list[0] = 5;
    for (auto &e : entries)
        list.insert(list.end(), e.begin(), e.end());
    fake::SetOidAnswer(OID_802_11_BSSID_LIST, list.data(), list.size());
    const BYTE ssid[36] = {6, 0, 0, 0, 'o', 'f', 'f', 'i', 'c', 'e'};
    fake::SetOidAnswer(OID_802_11_SSID, ssid, sizeof ssid);
    const BYTE bssid[6] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x01};
    fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
    fake::SetOidDword(OID_802_11_RSSI, (DWORD)-52);
    const DWORD configuration[8] = {32, 100, 0, 2437000, 16, 0, 0, 0};
    fake::SetOidAnswer(OID_802_11_CONFIGURATION, configuration, sizeof configuration);
    fake::SetOidDword(OID_802_11_AUTHENTICATION_MODE, 4);
    fake::SetOidDword(OID_802_11_INFRASTRUCTURE_MODE, 1);
    fake::SetOidDword(OID_802_11_NETWORK_TYPE_IN_USE, 1);
    fake::SetOidDword(OID_802_11_WEP_STATUS, 0);
}

class WirelessScreens : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        Office();
    }
    // Shown, painted, captured; `ready` runs once it is on the screen.
    std::vector<BYTE> Shoot(HWND dialog, const wchar_t *name, void (*ready)(HWND))
    {
        // Wholly on the desktop's screen: a part outside would not be captured.
        SetWindowPos(dialog, HWND_TOP, 20, 20, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        Pump(300);
        if (ready)
            ready(dialog);
        Pump(300);
        std::vector<BYTE> bgrx = Capture(dialog, &w_, &h_);
        Keep(bgrx, w_, h_, name);
        DestroyWindow(dialog);
        return bgrx;
    }
    int w_ = 0, h_ = 0;
};

TEST_F(WirelessScreens, SignalViewWithAMinuteOfReadings)
{
    // Walking away from the access point and back.
    for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
        g_item.signalHistory[i] = i < 4 ? NO_SIGNAL : -48 - (i < 24 ? i : 48 - i) * 2 + (i % 3);
    g_item.signalDbm = g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1];
    HWND dialog = CreateFromTemplate(IDD_SIGNAL, SignalViewDlgProc);
    std::vector<BYTE> shot = Shoot(dialog, L"signal.png", [](HWND d) { SendMessageW(d, WM_TIMER, SIGNAL_TIMER_ID, 0); });
    EXPECT_GT(Count(shot, RGB(0, 255, 0)), 300);   // the graph's bars
}

TEST_F(WirelessScreens, CardDetails)
{
    HWND dialog = CreateFromTemplate(IDD_CARD, CardDetailsDlgProc);
    Shoot(dialog, L"card.png", nullptr);
    EXPECT_GT(w_, 100);
}

void TapFirstRow(HWND dialog)
{
    HWND list = GetDlgItem(dialog, IDC_SCAN_LIST);
    ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
    NMHDR click = {list, IDC_SCAN_LIST, (UINT)NM_CLICK};
    SendMessageW(dialog, WM_NOTIFY, IDC_SCAN_LIST, (LPARAM)&click);
}

TEST_F(WirelessScreens, ScannerUprightAndWide)
{
    const struct {
        int id;
        const wchar_t *name;
    } cases[] = {{IDD_SCANNER, L"scanner.png"}, {IDD_SCANNER_WIDE, L"scanner-landscape.png"}};
    for (auto c : cases) {
        if (c.id == IDD_SCANNER_WIDE)
            fake::SetScreen(320, 240);
        HWND dialog = CreateFromTemplate(c.id, ScannerDlgProc);
        std::vector<BYTE> shot = Shoot(dialog, c.name, TapFirstRow);
        EXPECT_GT(Count(shot, RGB(255, 255, 255)), 1000) << c.id;
    }
}

} // namespace
