// wireless_tools_test.cpp: card details, signal view and the 802.11 scanner on the fake wireless driver.
//
// The last tests show the three filled and capture them from the screen; set
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
#include <string>
#include <vector>

namespace {

typedef std::vector<BYTE> Bytes;

std::wstring Text(HWND dialog, int id)
{
    WCHAR text[128] = L"";
    GetDlgItemTextW(dialog, id, text, 128);
    return text;
}

void SetConfiguration(DWORD beacon, DWORD atim, DWORD frequency)
{
    const DWORD record[8] = {32, beacon, atim, frequency, 16, 0, 0, 0};
    fake::SetOidAnswer(OID_802_11_CONFIGURATION, record, sizeof record);
}

class CardDetails : public DeviceTest {};

TEST_F(CardDetails, ValueTablesReadTheLowByteAndLeaveTheRestEmpty)
{
    struct Row {
        int id;
        DWORD oid;
        std::vector<std::pair<DWORD, const wchar_t *>> values;
    } rows[] = {
        {IDC_CARD_AUTH, OID_802_11_AUTHENTICATION_MODE,
         {{0, L"open"}, {1, L"shared"}, {2, L"auto-switch"}, {3, L"WPA"}, {4, L"WPAPSK"}, {5, L"WPANone"},
          {6, L""}, {7, L""}, {0x104, L"WPAPSK"}, {0xFFFFFF00, L"open"}}},
        {IDC_CARD_NETTYPE, OID_802_11_NETWORK_TYPE_IN_USE, {{0, L"FHSS"}, {1, L"DSSS"}, {2, L""}, {3, L""}, {0x201, L"DSSS"}}},
        {IDC_CARD_MODE, OID_802_11_INFRASTRUCTURE_MODE,
         {{0, L"ad hoc mode"}, {1, L"infrastructure mode"}, {2, L"auto"}, {3, L""}}},
        {IDC_CARD_WEP, OID_802_11_WEP_STATUS,
         {{0, L"enabled"}, {1, L"disabled"}, {2, L"key is absent"}, {3, L"key is not supported"}, {4, L""}, {6, L""}}},
    };
    for (auto &row : rows) {
        for (auto &v : row.values) {
            fake::ResetWireless();
            fake::SetWirelessAdapter(L"WLAN1");
            fake::SetOidDword(row.oid, v.first);
            HWND dialog = CreateFromTemplate(IDD_CARD, CardDetailsDlgProc);
            EXPECT_EQ(v.second, Text(dialog, row.id)) << row.id << " value " << v.first;
            DestroyWindow(dialog);
        }
    }
}

TEST_F(CardDetails, FrequencyAsReportedAndItsChannelOnEitherScale)
{
    struct {
        DWORD frequency;
        const wchar_t *shown, *channel;
    } cases[] = {
        {2437000, L"2437000 kHz", L"(channel 6)"},   {24370, L"24370 kHz", L"(channel 6)"},
        {2412000, L"2412000 kHz", L"(channel 1)"},   {24120, L"24120 kHz", L"(channel 1)"},
        {2477000, L"2477000 kHz", L"(channel 14)"},  {24770, L"24770 kHz", L"(channel 14)"},
        {2484000, L"2484000 kHz", L"(unknown channel)"}, {2407000, L"2407000 kHz", L"(unknown channel)"},
        {5180000, L"5180000 kHz", L"(unknown channel)"}, {51800, L"51800 kHz", L"(unknown channel)"},
    };
    for (auto c : cases) {
        fake::ResetWireless();
        fake::SetWirelessAdapter(L"WLAN1");
        SetConfiguration(100, 3, c.frequency);
        HWND dialog = CreateFromTemplate(IDD_CARD, CardDetailsDlgProc);
        EXPECT_EQ(L"100 Kusec", Text(dialog, IDC_CARD_BEACON));
        EXPECT_EQ(L"3 Kusec", Text(dialog, IDC_CARD_ATIM));
        EXPECT_EQ(c.shown, Text(dialog, IDC_CARD_FREQUENCY));
        EXPECT_EQ(c.channel, Text(dialog, IDC_CARD_CHANNEL)) << c.frequency;
        DestroyWindow(dialog);
    }
}

TEST_F(CardDetails, EachQueryStandsAloneAndNoAdapterLeavesEverythingEmpty)
{
    const int ids[] = {IDC_CARD_BEACON, IDC_CARD_ATIM, IDC_CARD_FREQUENCY, IDC_CARD_CHANNEL,
                       IDC_CARD_AUTH, IDC_CARD_NETTYPE, IDC_CARD_MODE, IDC_CARD_WEP};
    struct {
        const char *what;
        bool present;
        const wchar_t *binding;
        int result;
        size_t queries;
    } cases[] = {
        {"no device", false, L"WLAN1", 0, 0},
        {"an adapter without a binding name", true, L"", 0, 0},
        {"an adapter that answers nothing", true, L"WLAN1", 1, 5},
    };
    for (auto c : cases) {
        fake::ResetWireless();
        fake::SetWirelessAdapter(c.binding);
        fake::g_wireless.present = c.present;
        HWND dialog = CreateFromTemplate(IDD_CARD, CardDetailsDlgProc);
        for (int id : ids)
            EXPECT_EQ(L"", Text(dialog, id)) << c.what << " " << id;
        EXPECT_EQ(c.result, FillWirelessDetails(dialog)) << c.what;
        EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes) << c.what;
        EXPECT_EQ(2 * c.queries, fake::g_wireless.queries.size()) << c.what;
        DestroyWindow(dialog);
    }
    // In order; a failed configuration does not stop the others.
    EXPECT_EQ((std::vector<NDIS_OID>{OID_802_11_CONFIGURATION, OID_802_11_AUTHENTICATION_MODE,
                                     OID_802_11_INFRASTRUCTURE_MODE, OID_802_11_NETWORK_TYPE_IN_USE,
                                     OID_802_11_WEP_STATUS}),
              std::vector<NDIS_OID>(fake::g_wireless.queries.begin(), fake::g_wireless.queries.begin() + 5));
    fake::SetOidDword(OID_802_11_WEP_STATUS, 1);
    HWND dialog = CreateFromTemplate(IDD_CARD, CardDetailsDlgProc);
    EXPECT_EQ(L"", Text(dialog, IDC_CARD_FREQUENCY));
    EXPECT_EQ(L"disabled", Text(dialog, IDC_CARD_WEP));
    DestroyWindow(dialog);
}

class SignalView : public DeviceTest {};

TEST_F(SignalView, StrengthAndLevelWordsAtTheBandEdgesAndOnEveryTick)
{
    const struct {
        int dbm;
        const wchar_t *strength, *status;
    } cases[] = {
        {-200, L"-200dBm", L"No Signal"}, {-90, L"-90dBm", L"No Signal"}, {-89, L"-89dBm", L"Very Low"},
        {-81, L"-81dBm", L"Very Low"},    {-80, L"-80dBm", L"Low"},       {-71, L"-71dBm", L"Low"},
        {-70, L"-70dBm", L"Good"},        {-67, L"-67dBm", L"Good"},      {-66, L"-66dBm", L"Very Good"},
        {-20, L"-20dBm", L"Very Good"},
    };
    g_item.signalDbm = -75;
    HWND dialog = CreateFromTemplate(IDD_SIGNAL, SignalViewDlgProc);
    EXPECT_EQ(L"-75dBm", Text(dialog, IDC_SIGNAL_STRENGTH));
    for (auto c : cases) {
        g_item.signalDbm = c.dbm;
        SendMessageW(dialog, WM_TIMER, SIGNAL_TIMER_ID, 0);
        EXPECT_EQ(c.strength, Text(dialog, IDC_SIGNAL_STRENGTH));
        EXPECT_EQ(c.status, Text(dialog, IDC_SIGNAL_STATUS)) << c.dbm;
    }
    g_item.signalDbm = -50;
    SendMessageW(dialog, WM_TIMER, SIGNAL_TIMER_ID + 1, 0);   // not its timer
    EXPECT_EQ(L"-20dBm", Text(dialog, IDC_SIGNAL_STRENGTH));
    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    DestroyWindow(dialog);
}

// The graph painted on a canvas over the real background image.
class SignalGraph : public DeviceTest {
protected:
    void Paint(const std::vector<int> &readings)
    {
        int history[SIGNAL_HISTORY_SIZE];
        for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
            history[i] = i < (int)readings.size() ? readings[i] : NO_SIGNAL;
        canvas_.Make(SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT);
        HBITMAP image = LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDB_SIGNALGRAPH));
        ASSERT_NE(nullptr, image);
        background_.Make(SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT);
        HDC dc = CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(dc, image);
        BitBlt(background_.dc, 0, 0, SIGNALGRAPH_WIDTH, SIGNALGRAPH_HEIGHT, dc, 0, 0, SRCCOPY);
        PaintSignalGraph(canvas_.dc, dc, history);
        SelectObject(dc, old);
        DeleteDC(dc);
        DeleteObject(image);
    }
    // The topmost green pixel in column x, or -1.
    int Top(int x)
    {
        for (int y = 0; y < SIGNALGRAPH_HEIGHT; y++)
            if (canvas_.At(x, y) == RGB(0, 255, 0))
                return y;
        return -1;
    }
    void TearDown() override
    {
        canvas_.Free();
        background_.Free();
        DeviceTest::TearDown();
    }
    Canvas canvas_, background_;
};

TEST_F(SignalGraph, NoReadingsDrawOnlyTheBackground)
{
    Paint({-200, -90, -91, -120});
    EXPECT_EQ(background_.Pixels(), canvas_.Pixels());
}

TEST_F(SignalGraph, ReadingsRiseTwoPixelsPerDecibelUpToTheCap)
{
    // Reading i stands at x = 45 + 3i, from 68 up to (34 - min(r + 90, 32)) * 2.
    std::vector<int> readings = {-89, -80, -58, -30, -200, -70};
    readings.resize(SIGNAL_HISTORY_SIZE, NO_SIGNAL);
    readings.back() = -60;   // the newest, at the right
    Paint(readings);
    const struct {
        int x, top;
    } cases[] = {{45, 66}, {48, 48}, {51, 4}, {54, 4}, {57, -1}, {60, 28}, {159, -1}, {162, 8}};
    // The pen's round end stands one pixel above the line's end.
    for (auto c : cases)
        EXPECT_EQ(c.top < 0 ? -1 : c.top - 1, Top(c.x)) << c.x;
    EXPECT_EQ(RGB(0, 255, 0), canvas_.At(45, 68));
    EXPECT_EQ(RGB(0, 255, 0), canvas_.At(46, 67));   // three pixels wide
    EXPECT_EQ(RGB(0, 255, 0), canvas_.At(44, 67));
    EXPECT_NE(RGB(0, 255, 0), canvas_.At(45, 70));
}

// ---------------------------------------------------------------- scanner

struct Ap {
    BYTE last;             // the BSSID's last byte
    const char *ssid;
    int rssi;
    DWORD privacy, frequency, type, mode;
    std::vector<BYTE> rates;
};

Bytes Entry(const Ap &ap, DWORD length = 104)
{
    Bytes e(length, 0);
    const struct {
        size_t at;
        DWORD value;
    } fields[] = {{0, length}, {12, (DWORD)strlen(ap.ssid)}, {48, ap.privacy}, {52, (DWORD)ap.rssi},
                  {56, ap.type}, {72, ap.frequency}, {92, ap.mode}};
    for (auto f : fields)
        memcpy(&e[f.at], &f.value, 4);
    const BYTE mac[6] = {0x00, 0x0F, 0x66, 0xA0, 0x00, ap.last};
    memcpy(&e[4], mac, 6);
    memcpy(&e[16], ap.ssid, strlen(ap.ssid));
    for (size_t i = 0; i < ap.rates.size() && i < 8; i++)
        e[96 + i] = ap.rates[i];
    return e;
}

void Heard(const std::vector<Ap> &aps)
{
    Bytes list(4, 0);
    list[0] = (BYTE)aps.size();
    for (auto &ap : aps) {
        Bytes e = Entry(ap);
        list.insert(list.end(), e.begin(), e.end());
    }
    fake::SetOidAnswer(OID_802_11_BSSID_LIST, list.data(), list.size());
}

const Ap kHome = {1, "home", -55, 1, 2437000, 3, 1, {0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24}};
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

class Scanner : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        fake::SetWirelessAdapter(L"WLAN1");
        const BYTE ssid[36] = {4, 0, 0, 0, 'h', 'o', 'm', 'e'};
        fake::SetOidAnswer(OID_802_11_SSID, ssid, sizeof ssid);
        const BYTE bssid[6] = {0x00, 0x0F, 0x66, 0xA0, 0x00, 0x01};
        fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
    }
    void TearDown() override
    {
        if (dialog_)
            DestroyWindow(dialog_);
        DeviceTest::TearDown();
    }
    void Open(int id = IDD_SCANNER) { dialog_ = CreateFromTemplate(id, ScannerDlgProc); }
    void Tick() { SendMessageW(dialog_, WM_TIMER, SCANNER_TIMER_ID, 0); }
    HWND List() { return GetDlgItem(dialog_, IDC_SCAN_LIST); }
    int Rows() { return ListView_GetItemCount(List()); }
    int Image(int row)
    {
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = row;
        ListView_GetItem(List(), &item);
        return item.iImage;
    }
    std::wstring Name(int row)
    {
        WCHAR text[64] = L"";
        ListView_GetItemText(List(), row, 1, text, 64);
        return text;
    }
    void Select(int row) { TapRow(dialog_, row); }
    std::wstring Detail(int id) { return Text(dialog_, id); }
    HWND dialog_ = nullptr;
};

TEST_F(Scanner, RatesMaskTheBasicBitAndHalvesShowOneDecimal)
{
    const struct {
        std::vector<BYTE> bytes;
        const wchar_t *text;
    } cases[] = {
        {{0x02, 0x04, 0x0B, 0x16}, L"1,2,5.5,11 Mbps"},
        {{0x96}, L"11 Mbps"},
        {{0x8B, 0x0B}, L"5.5,5.5 Mbps"},
        {{0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24}, L"1,2,5.5,11,6,9,12,18 Mbps"},
        {{0x6C, 0xFF, 0x01, 0x80}, L"54,63.5,0.5,0 Mbps"},
        {{0x16, 0x00, 0x02}, L"11 Mbps"},   // 0 ends the list
    };
    for (auto &c : cases) {
        BYTE rates[8] = {};
        memcpy(rates, c.bytes.data(), c.bytes.size());
        WCHAR text[64] = L"unchanged";
        EXPECT_TRUE(FormatRates(rates, text, 64));
        EXPECT_EQ(c.text, std::wstring(text));
    }
    BYTE none[8] = {};
    WCHAR text[64] = L"unchanged";
    EXPECT_FALSE(FormatRates(none, text, 64));
    EXPECT_EQ(L"unchanged", std::wstring(text));
}

TEST_F(Scanner, ImagesByBandAndPrivacy)
{
    const struct {
        int rssi, open, locked;
    } cases[] = {{-200, 0, 1}, {-90, 0, 1}, {-89, 2, 3}, {-81, 2, 3}, {-80, 4, 5},
                 {-71, 4, 5},  {-70, 6, 7}, {-67, 6, 7}, {-66, 8, 9}, {-10, 8, 9}};
    for (auto c : cases) {
        EXPECT_EQ(c.open, AccessPointImage(c.rssi, 0)) << c.rssi;
        EXPECT_EQ(c.locked, AccessPointImage(c.rssi, 0x80000000)) << c.rssi;
    }
}

TEST_F(Scanner, ListsEveryBssidInOrderOfDiscoveryWithTheAssociatedNetwork)
{
    Heard({kHome, kHome5, kCafe});
    Open();
    EXPECT_EQ(L"home", Detail(IDC_SCAN_SSID));
    EXPECT_EQ(L"00:0F:66:A0:00:01", Detail(IDC_SCAN_BSSID));
    ASSERT_EQ(3, Rows());   // one network on two BSSIDs: two rows
    EXPECT_EQ(L"home", Name(0));
    EXPECT_EQ(L"home", Name(1));
    EXPECT_EQ(L"cafe", Name(2));
    EXPECT_EQ(9, Image(0));
    EXPECT_EQ(5, Image(1));
    EXPECT_EQ(2, Image(2));
    EXPECT_TRUE(g_scanner.timerRunning);
    EXPECT_EQ((std::vector<NDIS_OID>{OID_802_11_BSSID_LIST_SCAN}), fake::g_wireless.sets);

    Heard({kPeer, kCafe});
    Tick();
    ASSERT_EQ(4, Rows());
    EXPECT_EQ(L"laptop", Name(3));
    EXPECT_EQ(2u, fake::g_wireless.sets.size());
    EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes);
}

TEST_F(Scanner, DetailsOfTheTappedRowOnBothBandsAndBothScales)
{
    const struct {
        Ap ap;
        const wchar_t *signal, *wep, *bssid, *channel, *mode, *type, *rates;
    } cases[] = {
        {kHome, L"-55dBm", L"enabled", L"00:0F:66:A0:00:01", L"6", L"infrastructure", L"FDM24", L"1,2,5.5,11,6,9,12,18 Mbps"},
        {kHome5, L"-75dBm", L"enabled", L"00:0F:66:A0:00:02", L"-1", L"infrastructure", L"FDM5", L"6,9,12,18,24,36,48,54 Mbps"},
        {kCafe, L"-85dBm", L"disabled", L"00:0F:66:A0:00:03", L"1", L"infrastructure", L"DSSS", L"1,2,5.5,11 Mbps"},
        {kPeer, L"-68dBm", L"disabled", L"00:0F:66:A0:00:04", L"14", L"ad hoc", L"DSSS", L""},
        {{5, "x", -60, 0, 24770, 0, 2, {2}}, L"-60dBm", L"disabled", L"00:0F:66:A0:00:05", L"14", L"automatic", L"FHSS", L"1 Mbps"},
        {{6, "x", -60, 0, 2412000, 4, 7, {2}}, L"-60dBm", L"disabled", L"00:0F:66:A0:00:06", L"1", L"automatic", L"", L"1 Mbps"},
        {{7, "x", -60, 0, 2484000, 0, 1, {2}}, L"-60dBm", L"disabled", L"00:0F:66:A0:00:07", L"-1", L"infrastructure", L"FHSS", L"1 Mbps"},
        {{8, "x", -60, 0, 24840, 0, 1, {2}}, L"-60dBm", L"disabled", L"00:0F:66:A0:00:08", L"-1", L"infrastructure", L"FHSS", L"1 Mbps"},
    };
    for (auto &c : cases) {
        Heard({c.ap});
        Open(IDD_SCANNER_WIDE);
        Select(0);
        EXPECT_EQ(c.signal, Detail(IDC_SCAN_SIGNAL));
        EXPECT_EQ(c.wep, Detail(IDC_SCAN_WEP));
        EXPECT_EQ(c.bssid, Detail(IDC_SCAN_AP_BSSID));
        EXPECT_EQ(c.channel, Detail(IDC_SCAN_CHANNEL)) << c.ap.frequency;
        EXPECT_EQ(c.mode, Detail(IDC_SCAN_MODE));
        EXPECT_EQ(c.type, Detail(IDC_SCAN_TYPE));
        EXPECT_EQ(c.rates, Detail(IDC_SCAN_RATES));
        DestroyWindow(dialog_);
        dialog_ = nullptr;
    }
}

TEST_F(Scanner, AnAccessPointThatGoesKeepsItsRowAndComesBackToIt)
{
    Heard({kHome, kCafe});
    Open();
    Select(0);
    Heard({kCafe});
    Tick();
    ASSERT_EQ(2, Rows());
    EXPECT_EQ(1, Image(0));   // encrypted, no signal
    EXPECT_EQ(2, Image(1));
    EXPECT_EQ(L"-200dBm", Detail(IDC_SCAN_SIGNAL));   // the selected row's details follow
    Heard({kCafe, kHome});
    Tick();
    ASSERT_EQ(2, Rows());
    EXPECT_EQ(L"home", Name(0));
    EXPECT_EQ(9, Image(0));
    EXPECT_EQ(L"-55dBm", Detail(IDC_SCAN_SIGNAL));
    // A failed list read counts as nothing heard.
    fake::RemoveOidAnswer(OID_802_11_BSSID_LIST);
    Tick();
    EXPECT_EQ(1, Image(0));
    EXPECT_EQ(0, Image(1));
}

TEST_F(Scanner, TheFortyNinthAccessPointFindsNoEntry)
{
    Open();
    BYTE last = 1;
    // Nine entries fill the driver's answer; six rounds bring 54 access points.
    for (int round = 0; round < 6; round++) {
        std::vector<Ap> aps;
        for (int i = 0; i < 9; i++, last++)
            aps.push_back({last, "ap", -60, 0, 2437000, 1, 1, {2}});
        Heard(aps);
        Tick();
    }
    EXPECT_EQ(SCANNER_ENTRIES, g_scanner.count);
    EXPECT_EQ(SCANNER_ENTRIES, Rows());
    EXPECT_EQ(48, g_scanner.entries[47].bssid[5]);
    // The known ones still update; the newcomers stay out.
    Heard({{48, "ap", -85, 0, 2437000, 1, 1, {2}}, {60, "new", -40, 0, 2437000, 1, 1, {2}}});
    Tick();
    EXPECT_EQ(SCANNER_ENTRIES, Rows());
    EXPECT_EQ(2, Image(47));
    EXPECT_EQ(0, Image(0));
}

TEST_F(Scanner, HostileListsShowOnlyTheEntriesThatAreThere)
{
    auto put = [](Bytes b, size_t at, DWORD v) { memcpy(&b[at], &v, 4); return b; };
    Bytes two = put(Bytes(4), 0, 2);
    for (const Ap &ap : {kHome, kCafe}) {
        Bytes e = Entry(ap);
        two.insert(two.end(), e.begin(), e.end());
    }
    const struct {
        const char *what;
        Bytes list;
        int rows;
    } cases[] = {
        {"a count that lies", put(two, 0, 40), 2},
        {"a length past the buffer's end", put(two, 4 + 104, 2000), 1},
        {"an entry length of 0", put(two, 4, 0), 0},
        {"a count of 2^32-1", put(two, 0, 0xFFFFFFFF), 2},
        {"nothing but a count", put(Bytes(4), 0, 5), 0},
    };
    for (auto &c : cases) {
        fake::SetOidAnswer(OID_802_11_BSSID_LIST, c.list.data(), c.list.size());
        Open();
        EXPECT_EQ(c.rows, Rows()) << c.what;
        EXPECT_EQ(c.rows, g_scanner.count) << c.what;
        DestroyWindow(dialog_);
        dialog_ = nullptr;
    }
}

TEST_F(Scanner, NoDeviceOrNoBindingStopsTheTimerForGood)
{
    struct {
        const char *what;
        bool present;
        const wchar_t *binding;
    } cases[] = {{"no device", false, L"WLAN1"}, {"an adapter without a binding name", true, L""}};
    for (auto c : cases) {
        Heard({kHome});
        fake::g_wireless.present = true;
        fake::g_wireless.bindingName = L"WLAN1";
        Open();
        ASSERT_EQ(1, Rows());
        fake::g_wireless.present = c.present;
        fake::g_wireless.bindingName = c.binding;
        Heard({kCafe});
        Tick();
        EXPECT_FALSE(g_scanner.timerRunning) << c.what;
        EXPECT_EQ(1, Rows()) << c.what;   // its last contents stay
        EXPECT_EQ(9, Image(0)) << c.what;
        EXPECT_EQ(L"home", Detail(IDC_SCAN_SSID)) << c.what;
        DestroyWindow(dialog_);

        Open();   // opened without one: empty, no timer
        EXPECT_FALSE(g_scanner.timerRunning) << c.what;
        EXPECT_EQ(0, Rows()) << c.what;
        EXPECT_EQ(L"", Detail(IDC_SCAN_SSID)) << c.what;
        EXPECT_EQ(L"", Detail(IDC_SCAN_BSSID)) << c.what;
        EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes) << c.what;
        DestroyWindow(dialog_);
        dialog_ = nullptr;
    }
}

TEST_F(Scanner, NotAssociatedEmptiesTheSsidAndKeepsTheBssid)
{
    const BYTE zero[6] = {};
    fake::SetOidAnswer(OID_802_11_BSSID, zero, 6);   // shown: nothing was shown before
    Open();
    EXPECT_EQ(L"00:00:00:00:00:00", Detail(IDC_SCAN_BSSID));
    DestroyWindow(dialog_);
    const BYTE bssid[6] = {0x00, 0x0F, 0x66, 0xA0, 0x00, 0x01};
    fake::SetOidAnswer(OID_802_11_BSSID, bssid, 6);
    Heard({kHome});
    Open();
    fake::RemoveOidAnswer(OID_802_11_BSSID);
    Tick();
    EXPECT_EQ(L"", Detail(IDC_SCAN_SSID));
    EXPECT_EQ(L"00:0F:66:A0:00:01", Detail(IDC_SCAN_BSSID));
    EXPECT_TRUE(g_scanner.timerRunning);
}

TEST_F(Scanner, TheSecondaryPathUsesItsOwnWords)
{
    Heard({kHome, {9, "x", -68, 0, 2437000, 1, 1, {}}});
    Open();
    // Neither template has its list: one made for the test stands in.
    HWND other = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 10, 10, dialog_,
                                 (HMENU)IDC_SCAN_OTHER_LIST, GetModuleHandleW(nullptr), nullptr);
    LVITEMW item = {};
    for (int i = 0; i < 2; i++) {
        item.iItem = i;
        ListView_InsertItem(other, &item);
    }
    const struct {
        int row;
        const wchar_t *signal, *wep;
    } cases[] = {{1, L"good (-68dBm)", L"Disabled"}, {0, L"very good (-55dBm)", L"Enabled"}};
    for (auto c : cases) {
        ListView_SetItemState(other, c.row, LVIS_SELECTED, LVIS_SELECTED);
        NMHDR change = {other, IDC_SCAN_OTHER_LIST, 1};
        SendMessageW(dialog_, WM_NOTIFY, IDC_SCAN_OTHER_LIST, (LPARAM)&change);
        EXPECT_EQ(c.signal, Detail(IDC_SCAN_SIGNAL));
        EXPECT_EQ(c.wep, Detail(IDC_SCAN_WEP));
    }
}

// ---------------------------------------------------------------- pictures

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

// A handheld in a small office: its own network on two access points, a
// neighbour, a hotspot at the edge of range and an old open one.
void Office()
{
    fake::SetWirelessAdapter(L"TIACXWLN1");
    const std::vector<BYTE> g = {0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24}, b = {0x82, 0x84, 0x0B, 0x16};
    Heard({{0x01, "office", -52, 1, 2437000, 3, 1, g}, {0x02, "office", -69, 1, 2412000, 3, 1, g},
           {0x03, "neighbours", -77, 1, 2462000, 3, 1, g}, {0x04, "StationCafe", -86, 0, 2462000, 1, 1, b},
           {0x05, "linksys", -93, 0, 24770, 1, 1, b}});
    const BYTE ssid[36] = {6, 0, 0, 0, 'o', 'f', 'f', 'i', 'c', 'e'};
    fake::SetOidAnswer(OID_802_11_SSID, ssid, sizeof ssid);
    const BYTE bssid[6] = {0x00, 0x0F, 0x66, 0xA0, 0x00, 0x01};
    fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
    SetConfiguration(100, 0, 2437000);
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
        std::vector<BYTE> shot = Shoot(dialog, c.name, [](HWND d) { TapRow(d, 0); });
        EXPECT_GT(Count(shot, RGB(255, 255, 255)), 1000) << c.id;
    }
}

} // namespace
