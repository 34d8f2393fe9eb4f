// scanner.cpp: the 802.11 scanner: every access point heard since it opened, its level and details.
#include "platform/text.h"
#include "wireless/tools.h"
#include "wireless/bssidlist.h"
#include "wireless/wireless.h"
#include "item/item.h"
#include "platform/wireless.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <string.h>

ScannerState g_scanner;

namespace {

// The 1024-byte answer holds at most this many entries of the fixed size.
#define LIST_ROOM (WIRELESS_BUFFER_SIZE / BSSID_ENTRY_MIN_BYTES + 1)

const WCHAR *const kLevelWords[] = {L"no signal (%ddBm)", L"very low (%ddBm)", L"low (%ddBm)",
                                    L"good (%ddBm)", L"very good (%ddBm)"};

void ResetTable()
{
    memset(&g_scanner, 0, sizeof g_scanner);
    memset(g_scanner.shownBssid, 0xFF, sizeof g_scanner.shownBssid);
}

void FormatMac(const BYTE *mac, WCHAR *text, int chars)
{
    FormatText(text, chars, L"%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

void SetText(HWND dialog, int id, const WCHAR *format, int value)
{
    WCHAR text[40];
    FormatText(text, 40, format, value);
    SetDlgItemTextW(dialog, id, text);
}

// `secondary`: the older selection path's words ("Enabled", "good (-68dBm)").
void ShowDetails(HWND dialog, int index, bool secondary)
{
    if (index < 0 || index >= g_scanner.count)
        return;
    const AccessPoint &ap = g_scanner.entries[index];
    if (secondary)
        SetText(dialog, IDC_SCAN_SIGNAL, kLevelWords[SignalBand(ap.rssi)], ap.rssi);
    else
        SetText(dialog, IDC_SCAN_SIGNAL, L"%ddBm", ap.rssi);
    if (secondary)
        SetDlgItemTextW(dialog, IDC_SCAN_WEP, ap.privacy ? L"Enabled" : L"Disabled");
    else
        SetDlgItemTextW(dialog, IDC_SCAN_WEP, ap.privacy ? L"enabled" : L"disabled");
    WCHAR text[40];
    FormatMac(ap.bssid, text, 40);
    SetDlgItemTextW(dialog, IDC_SCAN_AP_BSSID, text);
    SetText(dialog, IDC_SCAN_CHANNEL, L"%d", ap.channel);
    SetDlgItemTextW(dialog, IDC_SCAN_MODE, ap.mode == 0 ? L"ad hoc" : ap.mode == 1 ? L"infrastructure" : L"automatic");
    const WCHAR *const types[] = {L"FHSS", L"DSSS", L"FDM5", L"FDM24"};
    SetDlgItemTextW(dialog, IDC_SCAN_TYPE, ap.networkType < 4 ? types[ap.networkType] : L"");
    WCHAR rates[64];
    if (FormatRates(ap.rates, rates, 64))
        SetDlgItemTextW(dialog, IDC_SCAN_RATES, rates);
}

void ShowSelected(HWND dialog)
{
    int row = ListView_GetNextItem(GetDlgItem(dialog, IDC_SCAN_LIST), -1, LVNI_SELECTED);
    if (row >= 0)
        ShowDetails(dialog, row, false);
}

void ShowSsid(HWND dialog, const char *ssid)
{
    if (strcmp(ssid, g_scanner.shownSsid) == 0)
        return;
    strcpy(g_scanner.shownSsid, ssid);
    WCHAR text[40];
    FormatText(text, 40, L"%hs", ssid);
    SetDlgItemTextW(dialog, IDC_SCAN_SSID, text);
}

void Fill(AccessPoint *ap, const BssidEntry &e)
{
    ap->privacy = e.privacy;
    ap->rssi = e.rssi;
    ap->networkType = e.networkType;
    ap->channel = ChannelFromFrequency(e.dsConfig);
    ap->mode = e.infrastructureMode;
    memcpy(ap->rates, e.rates, sizeof ap->rates);
    ap->seen = 1;
}

void AddAccessPoint(HWND list, const BssidEntry &e)
{
    // New access points past the table's end are not shown.
    if (g_scanner.count >= SCANNER_ENTRIES)
        return;
    int index = g_scanner.count;
    AccessPoint *ap = &g_scanner.entries[index];
    SsidText(e.ssid, e.ssidLength, ap->ssid);
    memcpy(ap->bssid, e.mac, sizeof ap->bssid);
    ap->row = index;
    Fill(ap, e);

    LVITEMW item = {};
    item.mask = LVIF_IMAGE | LVIF_STATE | LVIF_PARAM;
    item.iItem = index;
    item.iImage = AccessPointImage(ap->rssi, ap->privacy);
    ListView_InsertItem(list, &item);
    WCHAR text[40];
    FormatText(text, 40, L"%hs", ap->ssid);
    ListView_SetItemText(list, index, 1, text);
    g_scanner.count++;
}

void ReadList(HWND list, WirelessSession *session)
{
    const BYTE *data;
    if (!QueryWirelessOid(session, OID_802_11_BSSID_LIST, &data))
        return;
    static BssidEntry heard[LIST_ROOM];
    int n = DecodeBssidList(data, OidDataSize(WIRELESS_BUFFER_SIZE), heard, LIST_ROOM);
    for (int i = 0; i < n; i++) {
        int found = -1;
        for (int j = 0; j < g_scanner.count && found < 0; j++)
            if (memcmp(g_scanner.entries[j].bssid, heard[i].mac, 6) == 0)
                found = j;
        if (found >= 0)
            Fill(&g_scanner.entries[found], heard[i]);
        else
            AddAccessPoint(list, heard[i]);
    }
}

HIMAGELIST CreateSignalImages()
{
    HIMAGELIST images = ImageList_Create(32, 16, ILC_COLOR | ILC_MASK, 10, 0);
    if (!images)
        return nullptr;
    for (int id = IDI_SCAN_OPEN0; id <= IDI_SCAN_LOCKED4; id++) {
        HICON icon = static_cast<HICON>(LoadImageW(g_item.instance, MAKEINTRESOURCEW(id), IMAGE_ICON, 32, 16, 0));
        ImageList_AddIcon(images, icon);
        if (icon)
            DestroyIcon(icon);
    }
    return images;
}

void OpenScanner(HWND dialog)
{
    PlaceToolDialog(dialog, IsLandscape());
    SetWindowTextW(dialog, L"802.11 Scanner");   // found by its title from outside; shown nowhere
    ResetTable();
    HWND list = GetDlgItem(dialog, IDC_SCAN_LIST);
    // The list owns the image list and frees it with itself.
    (void)ListView_SetImageList(list, CreateSignalImages(), LVSIL_SMALL);
    LVCOLUMNW column = {};
    column.mask = LVCF_WIDTH;
    column.cx = 40;
    ListView_InsertColumn(list, 0, &column);
    column.cx = 160;
    ListView_InsertColumn(list, 1, &column);
    (void)ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT);
    if (RefreshAccessPoints(dialog))
        g_scanner.timerRunning = SetTimer(dialog, SCANNER_TIMER_ID, SCANNER_PERIOD_MS, nullptr) != 0;
}

void StopTimer(HWND dialog)
{
    if (g_scanner.timerRunning)
        KillTimer(dialog, SCANNER_TIMER_ID);
    g_scanner.timerRunning = false;
}

} // namespace

bool FormatRates(const BYTE *rates, WCHAR *text, int chars)
{
    WCHAR built[64] = L"";
    int length = 0;
    for (int i = 0; i < 8 && rates[i]; i++) {
        int r = rates[i] & 0x7F;   // the top bit marks a basic rate
        // Odd counts of 500 kbit/s end in .5: no floating point needed.
        int n = FormatText(built + length, 64 - length, r % 2 ? L"%ls%d.5" : L"%ls%d", i ? L"," : L"", r / 2);
        if (n < 0)
            break;
        length += n;
    }
    if (!built[0])
        return false;
    FormatText(text, chars, L"%ls Mbps", built);
    return true;
}

int AccessPointImage(int rssi, DWORD privacy)
{
    return 2 * SignalBand(rssi) + (privacy ? 1 : 0);
}

bool RefreshAccessPoints(HWND dialog)
{
    WirelessSession session;
    if (!OpenWirelessSession(&session))
        return false;
    HWND list = GetDlgItem(dialog, IDC_SCAN_LIST);
    // The list read below is the previous scan's; this asks for the next.
    SetWirelessOid(&session, OID_802_11_BSSID_LIST_SCAN);

    char ssid[33] = "";
    const BYTE *value;
    if (QueryWirelessOid(&session, OID_802_11_SSID, &value)) {
        uint32_t length;
        memcpy(&length, value, 4);
        SsidText(value + 4, length, ssid);
    }
    ShowSsid(dialog, ssid);
    if (QueryWirelessOid(&session, OID_802_11_BSSID, &value)) {
        if (memcmp(value, g_scanner.shownBssid, 6) != 0) {
            memcpy(g_scanner.shownBssid, value, 6);
            WCHAR text[40];
            FormatMac(g_scanner.shownBssid, text, 40);
            SetDlgItemTextW(dialog, IDC_SCAN_BSSID, text);
        }
    } else {
        ShowSsid(dialog, "");   // not associated: no network of its own
    }

    for (int i = 0; i < SCANNER_ENTRIES; i++)
        g_scanner.entries[i].seen = 0;
    ReadList(list, &session);
    CloseWirelessSession(&session);

    // Rows stay where they are; one that was not heard drops to no signal.
    for (int i = 0; i < g_scanner.count; i++) {
        AccessPoint &ap = g_scanner.entries[i];
        if (!ap.seen)
            ap.rssi = NO_SIGNAL;
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = ap.row;
        item.iImage = AccessPointImage(ap.rssi, ap.privacy);
        ListView_SetItem(list, &item);
    }
    ShowSelected(dialog);
    return true;
}

INT_PTR CALLBACK ScannerDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        OpenScanner(dialog);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            StopTimer(dialog);
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    case WM_TIMER:
        if (wParam == SCANNER_TIMER_ID) {
            StopTimer(dialog);
            // No device, or no adapter bound: the timer stays off for good.
            if (RefreshAccessPoints(dialog))
                g_scanner.timerRunning = SetTimer(dialog, SCANNER_TIMER_ID, SCANNER_PERIOD_MS, nullptr) != 0;
            return TRUE;
        }
        break;
    case WM_NOTIFY: {
        const NMHDR *header = reinterpret_cast<const NMHDR *>(lParam);
        if (header->idFrom == IDC_SCAN_LIST && header->code == (UINT)NM_CLICK)
            ShowSelected(dialog);
        else if (header->idFrom == IDC_SCAN_OTHER_LIST && header->code == 1) {
            HWND other = GetDlgItem(dialog, IDC_SCAN_OTHER_LIST);
            if (other)
                ShowDetails(dialog, ListView_GetNextItem(other, -1, LVNI_SELECTED), true);
        }
        return FALSE;   // the result is 0
    }
    }
    return FALSE;
}
