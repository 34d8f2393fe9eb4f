// wireless_tools_test.cpp: card details, signal view and the 802.11 scanner on the fake wireless driver.
//
// The last test shows the three filled and captures them from the screen; set
// QUORVANE_SHOTS to a folder to keep the pictures (the README's come from there).
#include "tests/support.h"
#include "host/png.h"
#include "platform/fake/fake_wireless.h"
#include "resources/resource.h"
#include "wireless/signal_graph.h"
#include "wireless/tools.h"
#include "wireless/wireless.h"

#include <commctrl.h>
#include <stdlib.h>

namespace {


struct Ap {
    BYTE last;             // the BSSID's last byte
    const char *ssid;
    int rssi;
    DWORD privacy, frequency, type, mode;
    std::vector<BYTE> rates;
};

// The driver's list of these access points, 104 bytes each.
void Heard(const std::vector<Ap> &aps)
{
    std::vector<BYTE> list(4 + 104 * aps.size(), 0);
    list[0] = (BYTE)aps.size();
    for (size_t i = 0; i < aps.size(); i++) {
        const Ap &ap = aps[i];
        BYTE *e = &list[4 + 104 * i];
        // The BSSID 00:0F:66:A0:00:last at 4, padded to 12.
        const DWORD fields[][2] = {
            {0, 104}, {4, 0xA0660F00}, {8, ap.last * 256u}, {12, (DWORD)strlen(ap.ssid)}, {48, ap.privacy},
            {52, (DWORD)ap.rssi}, {56, ap.type}, {72, ap.frequency}, {92, ap.mode}};
        for (auto f : fields)
            memcpy(e + f[0], &f[1], 4);
        memcpy(e + 16, ap.ssid, strlen(ap.ssid));
        std::copy(ap.rates.begin(), ap.rates.end(), e + 96);
    }
    fake::SetOidAnswer(OID_802_11_BSSID_LIST, list.data(), list.size());
}

const std::vector<BYTE> kG = {0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24};
const Ap kHome = {1, "home", -55, 1, 2437000, 3, 1, kG};
const Ap kHome5 = {2, "home", -75, 1, 5180000, 2, 1, {0x8C, 0x12, 0x98, 0x24, 0xB0, 0x48, 0x60, 0x6C}};
const Ap kCafe = {3, "cafe", -85, 0, 24120, 1, 1, {0x02, 0x04, 0x0B, 0x16}};
const Ap kPeer = {4, "laptop", -68, 0, 2477000, 1, 0, {}};

// A tap on a row of the list, as the list view tells its dialog.
void TapRow(HWND dialog, int row)
{
    HWND list = GetDlgItem(dialog, IDC_SCAN_LIST);
    ListView_SetItemState(list, row, LVIS_SELECTED, LVIS_SELECTED);
    NMHDR click = {list, IDC_SCAN_LIST, (UINT)NM_CLICK};
    SendMessageW(dialog, WM_NOTIFY, IDC_SCAN_LIST, (LPARAM)&click);
}

// A handheld associated with "home" through 00:0F:66:A0:00:01 on channel 6, WPA-PSK.
class WirelessTools : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        fake::SetWirelessAdapter(L"WLAN1");
        fake::SetOidAnswer(OID_802_11_SSID, "\4\0\0\0home", 8);
        fake::SetOidAnswer(OID_802_11_BSSID, "\x00\x0F\x66\xA0\x00\x01", 6);
        Configure(2437000, 4, 1, 1, 0);
    }
    void TearDown() override { DestroyWindow(dialog_); DeviceTest::TearDown(); }
    void Configure(DWORD frequency, DWORD auth, DWORD type, DWORD mode, DWORD wep)
    {
        const DWORD record[8] = {32, 100, 0, frequency, 16, 0, 0, 0};
        fake::SetOidAnswer(OID_802_11_CONFIGURATION, record, sizeof record);
        fake::SetOidDword(OID_802_11_AUTHENTICATION_MODE, auth);
        fake::SetOidDword(OID_802_11_NETWORK_TYPE_IN_USE, type);
        fake::SetOidDword(OID_802_11_INFRASTRUCTURE_MODE, mode);
        fake::SetOidDword(OID_802_11_WEP_STATUS, wep);
    }
    void Open(int id, DLGPROC proc = ScannerDlgProc) { DestroyWindow(dialog_); dialog_ = CreateFromTemplate(id, proc); }
    Texts Shows(std::initializer_list<int> ids) { return ControlTexts(dialog_, ids); }
    void Tick() { SendMessageW(dialog_, WM_TIMER, SCANNER_TIMER_ID, 0); }
    // The scanner's rows as image and name: "9 home".
    std::vector<std::string> Rows()
    {
        HWND list = GetDlgItem(dialog_, IDC_SCAN_LIST);
        std::vector<std::string> rows;
        WCHAR text[64];
        for (LVITEMW item = {LVIF_IMAGE}; ListView_GetItem(list, &item); item.iItem++) {
            ListView_GetItemText(list, item.iItem, 1, text, 64);
            rows.push_back(std::to_string(item.iImage) + " " + std::string(text, text + wcslen(text)));
        }
        return rows;
    }
    // Shown wholly on the desktop's screen, painted, captured and kept when asked;
    // `ready` runs once it is on the screen. How many pixels are (near) `colour`.
    int Shoot(const wchar_t *name, void (*ready)(HWND), COLORREF colour)
    {
        SetWindowPos(dialog_, HWND_TOP, 20, 20, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        ready(dialog_);
        MSG msg;
        for (DWORD start = GetTickCount(); GetTickCount() - start < 600; Sleep(10))
            while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageW(&msg);
        RECT rc;
        GetWindowRect(dialog_, &rc);
        int w = rc.right - rc.left, h = rc.bottom - rc.top, matching = 0;
        Canvas canvas;
        canvas.Make(w, h);
        HDC screen = GetDC(nullptr);
        BitBlt(canvas.dc, 0, 0, w, h, screen, rc.left, rc.top, SRCCOPY);
        ReleaseDC(nullptr, screen);
        std::vector<BYTE> bgrx;
        for (COLORREF c : canvas.Pixels()) {
            bgrx.insert(bgrx.end(), {GetBValue(c), GetGValue(c), GetRValue(c), 0});
            matching += abs(GetRValue(c) - GetRValue(colour)) < 40 && abs(GetGValue(c) - GetGValue(colour)) < 40 &&
                        abs(GetBValue(c) - GetBValue(colour)) < 40;
        }
        const char *folder = getenv("QUORVANE_SHOTS");
        std::wstring path = folder && *folder ? std::wstring(folder, folder + strlen(folder)) + L"\\" + name : L"";
        EXPECT_TRUE(path.empty() || WriteImageFile(path.c_str(), w, h, bgrx.data())) << "cannot write " << folder;
        return matching;
    }
    HWND dialog_ = nullptr;
};

TEST_F(WirelessTools, CardDetailsTablesByTheLowByteAndTheChannelOnEitherScale)
{
    // Each table at its last text and one past it; a value whose low byte picks.
    const struct { DWORD frequency, auth, type, mode, wep; Texts shown; } rounds[] = {
        {24770, 0x105, 0x201, 2, 3, {L"100 Kusec", L"0 Kusec", L"24770 kHz", L"(channel 14)", L"WPANone", L"DSSS", L"auto",
                                     L"key is not supported"}},
        {5180000, 6, 2, 3, 4, {L"100 Kusec", L"0 Kusec", L"5180000 kHz", L"(unknown channel)", L"", L"", L"", L""}},
    };
    for (auto &r : rounds) {
        Configure(r.frequency, r.auth, r.type, r.mode, r.wep);
        Open(IDD_CARD, CardDetailsDlgProc);
        EXPECT_EQ(r.shown, Shows({IDC_CARD_BEACON, IDC_CARD_ATIM, IDC_CARD_FREQUENCY, IDC_CARD_CHANNEL, IDC_CARD_AUTH,
                                  IDC_CARD_NETTYPE, IDC_CARD_MODE, IDC_CARD_WEP})) << r.frequency;
    }
    // Each query stands alone: a failed configuration does not stop the others.
    Configure(2437000, 4, 1, 1, 1);
    fake::RemoveOidAnswer(OID_802_11_CONFIGURATION);
    Open(IDD_CARD, CardDetailsDlgProc);
    EXPECT_EQ((Texts{L"", L"WPAPSK", L"disabled"}), Shows({IDC_CARD_FREQUENCY, IDC_CARD_AUTH, IDC_CARD_WEP}));
}

TEST_F(WirelessTools, SignalViewWordsByBandOnEveryTickAndTheGraphOfTheReadings)
{
    g_item.signalDbm = -75;
    Open(IDD_SIGNAL, SignalViewDlgProc);
    EXPECT_EQ(Texts{L"-75dBm"}, Shows({IDC_SIGNAL_STRENGTH}));
    const struct { int dbm; const wchar_t *status; } bands[] = {
        {-90, L"No Signal"}, {-89, L"Very Low"}, {-80, L"Low"}, {-70, L"Good"}, {-66, L"Very Good"}};
    for (auto b : bands) {
        g_item.signalDbm = b.dbm;
        SendMessageW(dialog_, WM_TIMER, SIGNAL_TIMER_ID, 0);
        EXPECT_EQ((Texts{std::to_wstring(b.dbm) + L"dBm", b.status}), Shows({IDC_SIGNAL_STRENGTH, IDC_SIGNAL_STATUS}));
    }

    // The graph: reading i stands at x = 45 + 3i, from 68 up to (34 - min(r + 90, 32)) * 2,
    // the pen's round end a pixel higher; none at -90 or below; the newest at the right.
    int history[SIGNAL_HISTORY_SIZE] = {-80, -30, -90};
    std::fill(history + 3, history + SIGNAL_HISTORY_SIZE, -60);
    Canvas canvas, background;   // a white one: no green but the lines'
    canvas.Make(SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT);
    background.Make(SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT);
    PaintSignalGraph(canvas.dc, background.dc, history);
    std::vector<int> tops;
    for (int x : {45, 48, 51, 162}) {
        int y = 0;
        while (y < SIGNALGRAPH_HEIGHT && canvas.At(x, y) != RGB(0, 255, 0))
            y++;
        tops.push_back(y);
    }
    EXPECT_EQ((std::vector<int>{47, 3, SIGNALGRAPH_HEIGHT, 7}), tops);
}

TEST_F(WirelessTools, ScannerListsEveryBssidInOrderKeepsTheRowsOfOnesThatGoAndStopsWithoutTheAdapter)
{
    Heard({kHome, kHome5, kCafe});
    Open(IDD_SCANNER);
    EXPECT_EQ((Texts{L"home", L"00:0F:66:A0:00:01"}), Shows({IDC_SCAN_SSID, IDC_SCAN_BSSID}));
    // One network on two BSSIDs: two rows; the image by band, encrypted ones odd.
    EXPECT_EQ((std::vector<std::string>{"9 home", "5 home", "2 cafe"}), Rows());
    EXPECT_EQ((std::vector<NDIS_OID>{OID_802_11_BSSID_LIST_SCAN}), fake::g_wireless.sets);

    TapRow(dialog_, 0);
    Heard({kPeer, kCafe});
    Tick();
    EXPECT_EQ((std::vector<std::string>{"1 home", "1 home", "2 cafe", "6 laptop"}), Rows());
    EXPECT_EQ(Texts{L"-200dBm"}, Shows({IDC_SCAN_SIGNAL}));   // the selected row's details follow
    Heard({kCafe, kHome});
    Tick();
    EXPECT_EQ("9 home", Rows().at(0));
    EXPECT_EQ(Texts{L"-55dBm"}, Shows({IDC_SCAN_SIGNAL}));
    // A failed list read counts as nothing heard; not associated empties the SSID alone.
    fake::RemoveOidAnswer(OID_802_11_BSSID_LIST);
    fake::RemoveOidAnswer(OID_802_11_BSSID);
    Tick();
    EXPECT_EQ((std::vector<std::string>{"1 home", "1 home", "0 cafe", "0 laptop"}), Rows());
    EXPECT_EQ((Texts{L"", L"00:0F:66:A0:00:01"}), Shows({IDC_SCAN_SSID, IDC_SCAN_BSSID}));
    // Without the adapter the scanner stops for good; the rows stay as they were.
    EXPECT_TRUE(g_scanner.timerRunning);
    fake::g_wireless.present = false;
    Tick();
    EXPECT_FALSE(g_scanner.timerRunning);
    EXPECT_EQ(4u, Rows().size());
    EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes);
}

TEST_F(WirelessTools, ScannerDetailsOfTheTappedRow)
{
    const struct { Ap ap; Texts shown; } cases[] = {
        {kHome5, {L"-75dBm", L"enabled", L"00:0F:66:A0:00:02", L"-1", L"infrastructure", L"FDM5",
                  L"6,9,12,18,24,36,48,54 Mbps"}},
        {kPeer, {L"-68dBm", L"disabled", L"00:0F:66:A0:00:04", L"14", L"ad hoc", L"DSSS", L""}},
        // Rates: halves with one decimal, the basic bit masked, 0 ends the list.
        {{5, "x", -60, 0, 24120, 0, 2, {0xFF, 0x01, 0x80, 0x00, 0x02}}, {L"-60dBm", L"disabled", L"00:0F:66:A0:00:05", L"1",
                                                                        L"automatic", L"FHSS", L"63.5,0.5,0 Mbps"}},
    };
    for (auto &c : cases) {
        Heard({c.ap, kPeer});
        Open(IDD_SCANNER_WIDE);
        TapRow(dialog_, 0);
        EXPECT_EQ(c.shown, Shows({IDC_SCAN_SIGNAL, IDC_SCAN_WEP, IDC_SCAN_AP_BSSID, IDC_SCAN_CHANNEL, IDC_SCAN_MODE,
                                  IDC_SCAN_TYPE, IDC_SCAN_RATES}));
    }
}

TEST_F(WirelessTools, ScannerTheFortyNinthAccessPointFindsNoEntry)
{
    Open(IDD_SCANNER);
    // Nine entries fill the driver's answer; six rounds bring 54 access points.
    for (int round = 0; round < 6; round++) {
        std::vector<Ap> aps;
        for (int i = 1; i <= 9; i++)
            aps.push_back({(BYTE)(round * 9 + i), "ap", -60, 0, 2437000, 1, 1, {2}});
        Heard(aps);
        Tick();
    }
    // The known ones still update, the 48th the last of them; the newcomers stay out.
    Heard({{48, "ap", -85, 0, 2437000, 1, 1, {2}}, {60, "new", -40, 0, 2437000, 1, 1, {2}}});
    Tick();
    std::vector<std::string> rows = Rows();
    EXPECT_TRUE(rows.size() == SCANNER_ENTRIES && rows[0] == "0 ap" && rows[47] == "2 ap") << rows.size();
}

// The four pictures of the README: a handheld in a small office, its own network on two
// access points, a neighbour, a hotspot at the edge of range and an old open one.
TEST_F(WirelessTools, PicturesOfTheWirelessToolsInASmallOffice)
{
    const std::vector<BYTE> b = {0x82, 0x84, 0x0B, 0x16};
    Heard({{0x01, "office", -52, 1, 2437000, 3, 1, kG}, {0x02, "office", -69, 1, 2412000, 3, 1, kG},
           {0x03, "neighbours", -77, 1, 2462000, 3, 1, kG}, {0x04, "StationCafe", -86, 0, 2462000, 1, 1, b},
           {0x05, "linksys", -93, 0, 24770, 1, 1, b}});
    fake::SetOidAnswer(OID_802_11_SSID, "\6\0\0\0office", 10);
    // Walking away from the access point and back.
    for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
        g_item.signalHistory[i] = i < 4 ? NO_SIGNAL : -48 - (i < 24 ? i : 48 - i) * 2 + (i % 3);
    g_item.signalDbm = g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1];
    Open(IDD_SIGNAL, SignalViewDlgProc);
    EXPECT_GT(Shoot(L"signal.png", [](HWND d) { SendMessageW(d, WM_TIMER, SIGNAL_TIMER_ID, 0); }, RGB(0, 255, 0)), 300);
    Open(IDD_CARD, CardDetailsDlgProc);
    EXPECT_GT(Shoot(L"card.png", [](HWND) {}, RGB(0, 0, 0)), 100);   // its text
    Open(IDD_SCANNER);
    EXPECT_GT(Shoot(L"scanner.png", [](HWND d) { TapRow(d, 0); }, RGB(255, 255, 255)), 1000);
    fake::SetScreen(320, 240);
    Open(IDD_SCANNER_WIDE);
    EXPECT_GT(Shoot(L"scanner-landscape.png", [](HWND d) { TapRow(d, 0); }, RGB(255, 255, 255)), 1000);
}

} // namespace
