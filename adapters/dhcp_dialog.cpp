// dhcp_dialog.cpp: the DHCP dialog: lease lines, release, renew and the public address.
#include "adapters/adapters.h"
#include "item/item.h"
#include "platform/inet.h"
#include "platform/text.h"
#include "resources/resource.h"

#include <stdlib.h>
#include <string.h>

namespace {

void SetAddress(HWND dialog, int id, const char *address)
{
    WCHAR text[32];
    FormatText(text, 32, L"%hs", address);
    SetDlgItemTextW(dialog, id, text);
}

void SetLeaseTime(HWND dialog, int id, DWORD seconds)
{
    FILETIME ft = UnixTimeToFileTime(seconds);
    SYSTEMTIME st;
    WCHAR text[64] = L"";
    if (FileTimeToSystemTime(&ft, &st))
        FormatLeaseTime(st, text, 64);
    SetDlgItemTextW(dialog, id, text);
}

// After opening and after a renew.
void Refill(HWND dialog)
{
    if (FillDhcpInfo(dialog))
        return;
    // The template has no line 1014: the title already says as much.
    SetDlgItemTextW(dialog, IDC_ADAPTER_TITLE, L"DHCP is not enabled.");
    EnableWindow(GetDlgItem(dialog, IDC_DHCP_RELEASE), FALSE);
    EnableWindow(GetDlgItem(dialog, IDC_DHCP_RENEW), FALSE);
}

void ReleaseOrRenew(HWND dialog, bool renew)
{
    DWORD index = FindInterfaceIndex(g_item.adapterName);
    if (index == UNKNOWN_INTERFACE)
        return;
    IP_ADAPTER_INDEX_MAP adapter = IP_ADAPTER_INDEX_MAP();
    adapter.Index = index;
    CopyText(adapter.Name, g_item.adapterName, MAX_ADAPTER_NAME);
    DWORD result = renew ? platform::IpRenewAddress(&adapter) : platform::IpReleaseAddress(&adapter);
    if (result != NO_ERROR) {
        platform::MessageBoxW(dialog, renew ? L"Renew DHCP Address Error!" : L"Release DHCP Address Error!",
                              L"Error", 0);
        return;
    }
    if (renew) {
        platform::MessageBoxW(dialog, L"DHCP IP address renewed. Please wait a few seconds to take it effect.",
                              L"Infomation", 0);
        Refill(dialog);
        return;
    }
    // The title and the public address stay.
    static const int kCleared[] = {IDC_DHCP_IP, IDC_DHCP_SERVER, IDC_DHCP_OBTAINED, IDC_DHCP_EXPIRES};
    for (size_t i = 0; i < sizeof kCleared / sizeof kCleared[0]; i++)
        SetDlgItemTextW(dialog, kCleared[i], L"");
}

void Detect(HWND dialog)
{
    // The request blocks this thread for as long as the servers take.
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    WCHAR address[PUBLIC_IP_TEXT_SIZE];
    RunPublicIpDetection(address);
    SetDlgItemTextW(dialog, IDC_DHCP_REAL_IP, address);
    SetCursor(nullptr);
}

} // namespace

FILETIME UnixTimeToFileTime(DWORD seconds)
{
    // 100 ns units from 1601-01-01; 11,644,473,600 s lie between the two epochs.
    ULONGLONG units = ((ULONGLONG)seconds + 11644473600ULL) * 10000000ULL;
    FILETIME ft;
    ft.dwLowDateTime = (DWORD)units;
    ft.dwHighDateTime = (DWORD)(units >> 32);
    return ft;
}

LPWSTR FormatLeaseTime(const SYSTEMTIME &t, LPWSTR text, size_t size)
{
    static const LPCWSTR kDays[] = {L"Sun.", L"Mon.", L"Tue.", L"Wed.", L"Thu.", L"Fri.", L"Sat."};
    static const LPCWSTR kMonths[] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                      L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    LPCWSTR day = t.wDayOfWeek < 7 ? kDays[t.wDayOfWeek] : L"";
    LPCWSTR month = t.wMonth >= 1 && t.wMonth <= 12 ? kMonths[t.wMonth - 1] : L"";
    FormatText(text, size, L"%ls %ls %d, %d %02d:%02d:%02d", day, month, t.wDay, t.wYear, t.wHour, t.wMinute,
               t.wSecond);
    return text;
}

bool FillDhcpInfo(HWND dialog)
{
    DWORD count = 0;
    platform::GetNumberOfInterfaces(&count);
    if (count == 0)
        return false;
    ULONG size = 0;
    if (platform::GetAdaptersInfo(nullptr, &size) != ERROR_BUFFER_OVERFLOW)
        return true;
    IP_ADAPTER_INFO *info = static_cast<IP_ADAPTER_INFO *>(malloc(size));
    if (!info)
        return false;
    if (platform::GetAdaptersInfo(info, &size) != NO_ERROR) {
        free(info);
        return true;
    }
    // The last DHCP-enabled adapter in the list is shown and becomes the monitored one.
    const IP_ADAPTER_INFO *chosen = nullptr;
    for (const IP_ADAPTER_INFO *a = info; a; a = a->Next) {
        if (a->DhcpEnabled) {
            chosen = a;
            FormatText(g_item.adapterName, 128, L"%.127hs", a->AdapterName);
        }
    }
    if (!chosen) {
        SetDlgItemTextW(dialog, IDC_DHCP_TITLE, L"DHCP is not enabled.");
        free(info);
        return false;
    }

    SetDlgItemTextW(dialog, IDC_DHCP_TITLE, L"DHCP Information");
    const char *address = chosen->CurrentIpAddress ? chosen->CurrentIpAddress->IpAddress.String : "";
    SetAddress(dialog, IDC_DHCP_IP, address);
    SetAddress(dialog, IDC_DHCP_SERVER, chosen->DhcpServer.IpAddress.String);
    if (strcmp(address, "0.0.0.0") == 0) {
        SetDlgItemTextW(dialog, IDC_DHCP_OBTAINED, L"");
        SetDlgItemTextW(dialog, IDC_DHCP_EXPIRES, L"");
        free(info);
        return true;
    }

    // Standard bias only, in unsigned 32-bit seconds: east of Greenwich near
    // 1970 the time wraps, as it always has.
    DWORD obtained = (DWORD)chosen->LeaseObtained, expires = (DWORD)chosen->LeaseExpires;
    TIME_ZONE_INFORMATION zone;
    if (platform::GetTimeZoneInformation(&zone) != TIME_ZONE_ID_INVALID) {
        obtained -= (DWORD)(zone.Bias * 60);
        expires -= (DWORD)(zone.Bias * 60);
    }
    SetLeaseTime(dialog, IDC_DHCP_OBTAINED, obtained);
    SetLeaseTime(dialog, IDC_DHCP_EXPIRES, expires);
    free(info);
    return true;
}

INT_PTR CALLBACK DhcpDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        PlaceToolDialog(dialog, true);
        Refill(dialog);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_DHCP_RELEASE:
            ReleaseOrRenew(dialog, false);
            return TRUE;
        case IDC_DHCP_RENEW:
            ReleaseOrRenew(dialog, true);
            return TRUE;
        case IDC_DHCP_DETECT:
            Detect(dialog);
            return FALSE;
        case IDOK:
        case IDCANCEL:
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    }
    return FALSE;
}
