// card_details.cpp: the wireless card details dialog: the adapter's radio settings, read once.
#include "platform/text.h"
#include "wireless/tools.h"
#include "item/item.h"
#include "wireless/wireless.h"
#include "platform/wireless.h"
#include "resources/resource.h"

#include <string.h>

namespace {

// Only the low byte of each value picks its text; the rest is empty.
const WCHAR *const kAuthentication[] = {L"open", L"shared", L"auto-switch", L"WPA", L"WPAPSK", L"WPANone"};
// Only the two oldest network types have names here.
const WCHAR *const kNetworkType[] = {L"FHSS", L"DSSS"};
const WCHAR *const kMode[] = {L"ad hoc mode", L"infrastructure mode", L"auto"};
const WCHAR *const kWep[] = {L"enabled", L"disabled", L"key is absent", L"key is not supported"};

void ShowByTable(WirelessSession *session, HWND dialog, int id, DWORD oid, const WCHAR *const *texts,
                 DWORD count)
{
    DWORD value;
    if (!QueryWirelessDword(session, oid, &value))
        return;
    value &= 0xFF;
    SetDlgItemTextW(dialog, id, value < count ? texts[value] : L"");
}

DWORD Field(const BYTE *record, int index)
{
    DWORD v;
    memcpy(&v, record + 4 * index, sizeof v);
    return v;
}

} // namespace

int FillWirelessDetails(HWND dialog)
{
    WirelessSession session;
    if (!OpenWirelessSession(&session))
        return 0;

    const BYTE *configuration;
    if (QueryWirelessOid(&session, OID_802_11_CONFIGURATION, &configuration)) {
        // Length, beacon period, ATIM window, DS configuration.
        DWORD frequency = Field(configuration, 3);
        WCHAR text[40];
        FormatText(text, 40, L"%d Kusec", (int)Field(configuration, 1));
        SetDlgItemTextW(dialog, IDC_CARD_BEACON, text);
        FormatText(text, 40, L"%d Kusec", (int)Field(configuration, 2));
        SetDlgItemTextW(dialog, IDC_CARD_ATIM, text);
        // As reported, whatever the adapter's unit: 24370 kHz on some.
        FormatText(text, 40, L"%d kHz", (int)frequency);
        SetDlgItemTextW(dialog, IDC_CARD_FREQUENCY, text);
        int channel = ChannelFromFrequency(frequency);
        if (channel >= 1)
            FormatText(text, 40, L"(channel %d)", channel);
        else
            CopyText(text, L"(unknown channel)", 40);
        SetDlgItemTextW(dialog, IDC_CARD_CHANNEL, text);
    }
    ShowByTable(&session, dialog, IDC_CARD_AUTH, OID_802_11_AUTHENTICATION_MODE, kAuthentication, 6);
    ShowByTable(&session, dialog, IDC_CARD_MODE, OID_802_11_INFRASTRUCTURE_MODE, kMode, 3);
    ShowByTable(&session, dialog, IDC_CARD_NETTYPE, OID_802_11_NETWORK_TYPE_IN_USE, kNetworkType, 2);
    ShowByTable(&session, dialog, IDC_CARD_WEP, OID_802_11_WEP_STATUS, kWep, 4);
    CloseWirelessSession(&session);
    return 1;
}

INT_PTR CALLBACK CardDetailsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        PlaceToolDialog(dialog, true);
        // Found by its title from outside (tests, accessibility); shown nowhere.
        SetWindowTextW(dialog, L"Wireless Card Details");
        FillWirelessDetails(dialog);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) {
            EndDialog(dialog, IDOK);
            return TRUE;
        }
        break;
    }
    return FALSE;
}
