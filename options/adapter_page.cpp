// adapter_page.cpp: the options sheet's "Adapter" page: the monitored card and its properties.
#include "adapters/adapters.h"
#include "item/item.h"
#include "options/options.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <stdlib.h>
#include <string.h>

// Megabits are counted in 16 bits, as the device's own page does.
static void FormatAdapterSpeed(DWORD speed, LPWSTR text, size_t size)
{
    if (speed < 1000000)
        FormatText(text, size, L"%d bps", (int)speed);
    else
        FormatText(text, size, L"%d Mbps", (int)(WORD)(speed / 1000000));
}

// A row whose value is empty is left out.
static void AddRow(HWND list, LPCWSTR item, LPWSTR value)
{
    if (!value[0])
        return;
    LVITEMW row;
    ZeroMemory(&row, sizeof row);
    row.mask = LVIF_TEXT;
    row.iItem = ListView_GetItemCount(list);
    row.pszText = const_cast<LPWSTR>(item);
    int index = ListView_InsertItem(list, &row);
    if (index >= 0)
        ListView_SetItemText(list, index, 1, value);
}

// One value buffer serves every row, and two rows keep what it held: an
// adapter without a hardware address shows its IP address as "MAC Address",
// and one without DHCP shows the row before it again as "DHCP Server".
static void AddPropertyRows(HWND list, const IP_ADAPTER_INFO *adapter)
{
    WCHAR value[MAX_ADAPTER_DESCRIPTION_LENGTH + 8];
    FormatText(value, sizeof value / sizeof value[0], L"%hs", adapter->Description);
    AddRow(list, L"Adapter", value);

    MIB_IFROW row;
    ZeroMemory(&row, sizeof row);
    row.dwIndex = adapter->Index;
    if (platform::GetIfEntry(&row) == NO_ERROR) {
        CopyText(value, InterfaceTypeName(row.dwType), sizeof value / sizeof value[0]);
        AddRow(list, L"Type", value);
        FormatAdapterSpeed(row.dwSpeed, value, sizeof value / sizeof value[0]);
        AddRow(list, L"Speed", value);
    }

    // The device fills in the current address; a desktop leaves it out and
    // lists the same address first in the address list.
    const IP_ADDR_STRING *address = adapter->CurrentIpAddress ? adapter->CurrentIpAddress : &adapter->IpAddressList;
    FormatText(value, sizeof value / sizeof value[0], L"%.15hs", address->IpAddress.String);
    AddRow(list, L"IP Address", value);

    UINT length = adapter->AddressLength < MAX_ADAPTER_ADDRESS_LENGTH ? adapter->AddressLength
                                                                       : MAX_ADAPTER_ADDRESS_LENGTH;
    if (length > 0) {
        FormatText(value, sizeof value / sizeof value[0], L"%02X", adapter->Address[0]);
        for (UINT i = 1; i < length; i++) {
            size_t used = wcslen(value);
            FormatText(value + used, sizeof value / sizeof value[0] - used, L":%02X", adapter->Address[i]);
        }
    }
    AddRow(list, L"MAC Address", value);

    if (adapter->DhcpEnabled)
        FormatText(value, sizeof value / sizeof value[0], L"%.15hs", adapter->DhcpServer.IpAddress.String);
    AddRow(list, L"DHCP Server", value);
}

// The page shows the adapter the item monitors, chosen by the same rule as
// the tick's (the first Ethernet-type adapter), and offers no other.
static BOOL FillAdapterPage(HWND page)
{
    HWND combo = GetDlgItem(page, IDC_OPT_ADAPTER);
    HWND list = GetDlgItem(page, IDC_OPT_ADAPTER_ROWS);
    if (!combo || !list)
        return FALSE;
    ListView_DeleteAllItems(list);
    int s = IsHiResScreen() ? 2 : 1;
    AddListColumn(list, 0, L"Item", 80 * s);
    AddListColumn(list, 1, L"Value", 140 * s);
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);

    DWORD count = 0;
    platform::GetNumberOfInterfaces(&count);
    if (count == 0)
        return TRUE;
    ULONG size = 0;
    if (platform::GetAdaptersInfo(nullptr, &size) != ERROR_BUFFER_OVERFLOW)
        return TRUE;
    IP_ADAPTER_INFO *info = static_cast<IP_ADAPTER_INFO *>(malloc(size));
    if (!info)
        return TRUE;
    if (platform::GetAdaptersInfo(info, &size) == NO_ERROR) {
        const IP_ADAPTER_INFO *adapter = info;
        while (adapter && adapter->Type != MIB_IF_TYPE_ETHERNET)
            adapter = adapter->Next;
        if (adapter) {
            FormatText(g_item.adapterName, 128, L"%hs", adapter->AdapterName);
            SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(g_item.adapterName));
            SendMessageW(combo, CB_SETCURSEL, 0, 0);
            AddPropertyRows(list, adapter);
        }
    }
    free(info);
    return TRUE;
}

INT_PTR CALLBACK AdapterPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG)
        return FillAdapterPage(page);
    INT_PTR result;
    return HandleSheetPageMessage(page, message, wParam, lParam, &result) ? result : FALSE;
}
