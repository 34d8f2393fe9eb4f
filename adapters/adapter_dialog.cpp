// adapter_dialog.cpp: the adapter details dialog, and the interface index lookup of release and renew.
#include "adapters/adapters.h"
#include "item/item.h"
#include "platform/inet.h"
#include "platform/text.h"
#include "resources/resource.h"

#include <stdlib.h>
#include <wchar.h>

namespace {

const IP_ADDR_STRING kNoAddress = {};

// The current address entry; a platform that leaves it unset gives blanks.
const IP_ADDR_STRING *CurrentAddress(const IP_ADAPTER_INFO *a)
{
    return a->CurrentIpAddress ? a->CurrentIpAddress : &kNoAddress;
}

void SetText(HWND dialog, int id, LPCWSTR format, const char *value)
{
    WCHAR text[64];
    FormatText(text, 64, format, value);
    SetDlgItemTextW(dialog, id, text);
}

void FillDns(HWND dialog, ULONG index, bool landscape)
{
    ULONG size = 0;
    if (platform::GetPerAdapterInfo(index, nullptr, &size) != ERROR_BUFFER_OVERFLOW)
        return;
    IP_PER_ADAPTER_INFO *info = static_cast<IP_PER_ADAPTER_INFO *>(malloc(size));
    if (!info)
        return;
    if (platform::GetPerAdapterInfo(index, info, &size) == NO_ERROR) {
        const IP_ADDR_STRING *first = &info->DnsServerList, *second = first->Next;
        WCHAR text[64];
        if (landscape) {
            FormatText(text, 64, second ? L"%hs, %hs" : L"%hs", first->IpAddress.String,
                       second ? second->IpAddress.String : "");
            SetDlgItemTextW(dialog, IDC_ADAPTER_DNS1, text);
        } else {
            SetText(dialog, IDC_ADAPTER_DNS1, L"%hs", first->IpAddress.String);
            if (second)
                SetText(dialog, IDC_ADAPTER_DNS2, L"%hs", second->IpAddress.String);
        }
    }
    free(info);
}

void FillWins(HWND dialog, const IP_ADAPTER_INFO *a, bool landscape)
{
    const char *primary = a->PrimaryWinsServer.IpAddress.String;
    const char *secondary = a->SecondaryWinsServer.IpAddress.String;
    if (!a->HaveWins) {
        SetDlgItemTextW(dialog, IDC_ADAPTER_WINS1, L"N/A");
    } else if (landscape) {
        WCHAR text[64];
        FormatText(text, 64, secondary[0] ? L"%hs, %hs" : L"%hs", primary, secondary);
        SetDlgItemTextW(dialog, IDC_ADAPTER_WINS1, text);
    } else {
        SetText(dialog, IDC_ADAPTER_WINS1, L"%hs", primary);
        SetText(dialog, IDC_ADAPTER_WINS2, L"%hs", secondary);
    }
}

void OpenAdapterDialog(HWND dialog)
{
    PlaceToolDialog(dialog, true);
    if (!g_item.adapterName[0]) {
        if (!ChooseAdapter()) {
            SetDlgItemTextW(dialog, IDC_ADAPTER_TITLE, L"No adapter is available.");
            return;
        }
        WriteSettingString(L"Adapter", g_item.adapterName);
    }
    FillAdapterDetails(dialog);
}

} // namespace

LPCWSTR InterfaceTypeName(DWORD type)
{
    switch (type) {
    case 1: return L"other";
    case 6: return L"ethernet";
    case 9: return L"token ring";
    case 15: return L"fddi";
    case 23: return L"ppp";
    case 24: return L"loopback";
    case 28: return L"slip";
    }
    return L"";
}


void FillAdapterDetails(HWND dialog)
{
    DWORD count = 0;
    platform::GetNumberOfInterfaces(&count);
    if (count == 0)
        return;
    ULONG size = 0;
    if (platform::GetAdaptersInfo(nullptr, &size) != ERROR_BUFFER_OVERFLOW)
        return;
    IP_ADAPTER_INFO *info = static_cast<IP_ADAPTER_INFO *>(malloc(size));
    if (!info)
        return;
    if (platform::GetAdaptersInfo(info, &size) != NO_ERROR) {
        free(info);
        return;
    }
    const IP_ADAPTER_INFO *a = info;
    while (a && a->Type != MIB_IF_TYPE_ETHERNET)
        a = a->Next;
    if (!a) {
        free(info);
        return;
    }
    // The dialog shows the first Ethernet-type adapter, whatever the options
    // chose, and leaves it behind as the monitored one.
    FormatText(g_item.adapterName, 128, L"%.127hs", a->AdapterName);

    WCHAR text[320];
    if (a->Description[0])
        FormatText(text, 320, L"Adapter - %hs", a->Description);
    else
        FormatText(text, 320, L"Adapter - %ls", g_item.adapterName);
    SetDlgItemTextW(dialog, IDC_ADAPTER_TITLE, text);

    MIB_IFROW row = MIB_IFROW();
    row.dwIndex = a->Index;
    platform::GetIfEntry(&row);
    SetDlgItemTextW(dialog, IDC_ADAPTER_TYPE, InterfaceTypeName(row.dwType));
    if (row.dwSpeed < 1000000)
        FormatText(text, 320, L"%lu bps", (unsigned long)row.dwSpeed);
    else
        FormatText(text, 320, L"%lu Mbps", (unsigned long)(row.dwSpeed / 1000000));
    SetDlgItemTextW(dialog, IDC_ADAPTER_SPEED, text);

    const IP_ADDR_STRING *current = CurrentAddress(a);
    FormatText(text, 320, L"%hs", current->IpAddress.String);
    SetDlgItemTextW(dialog, IDC_ADAPTER_IP, text);
    // No hardware address leaves the buffer as it is: the line repeats the
    // IP address. Users have seen it so; it stays.
    UINT length = a->AddressLength < MAX_ADAPTER_ADDRESS_LENGTH ? a->AddressLength : MAX_ADAPTER_ADDRESS_LENGTH;
    for (UINT i = 0; i < length; i++) {
        WCHAR pair[4];
        FormatText(pair, 4, i ? L":%02X" : L"%02X", a->Address[i]);
        if (i == 0)
            text[0] = 0;
        wcscat(text, pair);
    }
    SetDlgItemTextW(dialog, IDC_ADAPTER_MAC, text);
    SetText(dialog, IDC_ADAPTER_GATEWAY, L"%hs", a->GatewayList.IpAddress.String);
    SetText(dialog, IDC_ADAPTER_MASK, L"%hs", current->IpMask.String);

    bool landscape = g_item.screenWidth >= g_item.screenHeight;
    FillDns(dialog, a->Index, landscape);
    FillWins(dialog, a, landscape);
    free(info);
}

DWORD FindInterfaceIndex(LPCWSTR adapterName)
{
    ULONG size = 0;
    if (platform::GetInterfaceInfo(nullptr, &size) != ERROR_INSUFFICIENT_BUFFER)
        return UNKNOWN_INTERFACE;
    IP_INTERFACE_INFO *table = static_cast<IP_INTERFACE_INFO *>(malloc(size));
    if (!table)
        return UNKNOWN_INTERFACE;
    DWORD index = UNKNOWN_INTERFACE;
    if (platform::GetInterfaceInfo(table, &size) == NO_ERROR) {
        for (LONG i = 0; i < table->NumAdapters; i++) {
            if (wcscmp(table->Adapter[i].Name, adapterName) == 0) {
                index = g_item.interfaceIndex = table->Adapter[i].Index;
                break;
            }
        }
    }
    free(table);
    return index;
}

INT_PTR CALLBACK AdapterDetailsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        OpenAdapterDialog(dialog);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    }
    return FALSE;
}
