// wlan_win32.cpp: the wireless driver on a desktop: the Native Wifi API answering as the device's driver would.
#ifndef _WIN32_WCE

#include "platform/wireless.h"
#include "platform/win32/wlan_answers.h"
#include "platform/text.h"

#include <wlanapi.h>

// The translation reads the API's records at these offsets.
static_assert(sizeof(WLAN_BSS_ENTRY) == WLAN_BSS_ENTRY_SIZE, "WLAN_BSS_ENTRY");
static_assert(offsetof(WLAN_BSS_LIST, wlanBssEntries) == WLAN_BSS_LIST_ENTRIES, "WLAN_BSS_LIST");
static_assert(offsetof(WLAN_BSS_ENTRY, dot11Bssid) == WLAN_BSS_BSSID, "dot11Bssid");
static_assert(offsetof(WLAN_BSS_ENTRY, dot11BssType) == WLAN_BSS_TYPE, "dot11BssType");
static_assert(offsetof(WLAN_BSS_ENTRY, dot11BssPhyType) == WLAN_BSS_PHY_TYPE, "dot11BssPhyType");
static_assert(offsetof(WLAN_BSS_ENTRY, lRssi) == WLAN_BSS_RSSI, "lRssi");
static_assert(offsetof(WLAN_BSS_ENTRY, usBeaconPeriod) == WLAN_BSS_BEACON_PERIOD, "usBeaconPeriod");
static_assert(offsetof(WLAN_BSS_ENTRY, usCapabilityInformation) == WLAN_BSS_CAPABILITY, "capability");
static_assert(offsetof(WLAN_BSS_ENTRY, ulChCenterFrequency) == WLAN_BSS_FREQUENCY, "ulChCenterFrequency");
static_assert(offsetof(WLAN_BSS_ENTRY, wlanRateSet) == WLAN_BSS_RATE_SET, "wlanRateSet");
static_assert(sizeof(WLAN_CONNECTION_ATTRIBUTES) == WLAN_CONNECTION_SIZE, "WLAN_CONNECTION_ATTRIBUTES");
static_assert(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanAssociationAttributes) +
                  offsetof(WLAN_ASSOCIATION_ATTRIBUTES, dot11Bssid) == WLAN_CONNECTION_BSSID, "dot11Bssid");
static_assert(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanAssociationAttributes) +
                  offsetof(WLAN_ASSOCIATION_ATTRIBUTES, wlanSignalQuality) == WLAN_CONNECTION_QUALITY, "quality");
static_assert(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanSecurityAttributes) == WLAN_CONNECTION_SECURITY, "security");

namespace {

// Loaded by name, so the DLL still loads where the API is missing.
struct WlanApi {
    bool tried;
    HMODULE module;
    DWORD(WINAPI *OpenHandle)(DWORD, PVOID, PDWORD, PHANDLE);
    DWORD(WINAPI *CloseHandle)(HANDLE, PVOID);
    DWORD(WINAPI *EnumInterfaces)(HANDLE, PVOID, PWLAN_INTERFACE_INFO_LIST *);
    DWORD(WINAPI *QueryInterface)(HANDLE, const GUID *, WLAN_INTF_OPCODE, PVOID, PDWORD, PVOID *,
                                  PWLAN_OPCODE_VALUE_TYPE);
    DWORD(WINAPI *GetNetworkBssList)(HANDLE, const GUID *, const DOT11_SSID *, DOT11_BSS_TYPE, BOOL, PVOID,
                                     PWLAN_BSS_LIST *);
    DWORD(WINAPI *Scan)(HANDLE, const GUID *, const DOT11_SSID *, const WLAN_RAW_DATA *, PVOID);
    VOID(WINAPI *FreeMemory)(PVOID);
};
WlanApi g_api;

template <typename F> bool Find(F *function, const char *name)
{
    *function = reinterpret_cast<F>(reinterpret_cast<void *>(GetProcAddress(g_api.module, name)));
    return *function != nullptr;
}

// Loaded once for the process: every tick opens the driver anew.
bool LoadApi()
{
    if (g_api.tried)
        return g_api.module != nullptr;
    g_api.tried = true;
    g_api.module = LoadLibraryW(L"wlanapi.dll");
    if (!g_api.module)
        return false;
    if (!Find(&g_api.OpenHandle, "WlanOpenHandle") || !Find(&g_api.CloseHandle, "WlanCloseHandle") ||
        !Find(&g_api.EnumInterfaces, "WlanEnumInterfaces") || !Find(&g_api.QueryInterface, "WlanQueryInterface") ||
        !Find(&g_api.GetNetworkBssList, "WlanGetNetworkBssList") || !Find(&g_api.Scan, "WlanScan") ||
        !Find(&g_api.FreeMemory, "WlanFreeMemory")) {
        FreeLibrary(g_api.module);
        g_api.module = nullptr;
    }
    return g_api.module != nullptr;
}

// The driver's name for an interface: its GUID in braces.
void InterfaceName(const GUID &g, WCHAR *name, int chars)
{
    FormatText(name, chars, L"{%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", (unsigned long)g.Data1,
               g.Data2, g.Data3, g.Data4[0], g.Data4[1], g.Data4[2], g.Data4[3], g.Data4[4], g.Data4[5],
               g.Data4[6], g.Data4[7]);
}

// Binding 0 is the first wireless interface the API lists; by name, the
// one whose name is given.
bool FindInterface(HANDLE client, LPCWSTR name, GUID *found, WCHAR *description, int chars)
{
    PWLAN_INTERFACE_INFO_LIST list = nullptr;
    if (g_api.EnumInterfaces(client, nullptr, &list) != ERROR_SUCCESS || !list)
        return false;
    bool ok = false;
    for (DWORD i = 0; i < list->dwNumberOfItems && !ok; i++) {
        WCHAR own[64];
        InterfaceName(list->InterfaceInfo[i].InterfaceGuid, own, 64);
        if (!name || lstrcmpiW(own, name) == 0) {
            *found = list->InterfaceInfo[i].InterfaceGuid;
            if (description)
                CopyText(description, list->InterfaceInfo[i].strInterfaceDescription, chars);
            ok = true;
        }
    }
    g_api.FreeMemory(list);
    return ok;
}

void WriteRequest(BYTE *buffer, LPCWSTR name, NDIS_OID oid)
{
    NDISUIO_QUERY_OID *request = reinterpret_cast<NDISUIO_QUERY_OID *>(buffer);
    request->Oid = oid;
    request->ptcDeviceName = const_cast<PTCHAR>(name);
}

} // namespace

namespace platform {

HANDLE OpenWirelessDevice()
{
    if (!LoadApi())
        return nullptr;
    DWORD version = 0;
    HANDLE client = nullptr;
    if (g_api.OpenHandle(2, nullptr, &version, &client) != ERROR_SUCCESS)
        return nullptr;
    return client;
}

void CloseWirelessDevice(HANDLE device)
{
    if (device && g_api.module)
        g_api.CloseHandle(device, nullptr);
}

// The record, then the name and the description right after it.
BOOL QueryBinding(HANDLE device, BYTE *buffer, DWORD size)
{
    GUID guid;
    WCHAR name[64], description[WLAN_MAX_NAME_LENGTH];
    if (!device || !FindInterface(device, nullptr, &guid, description, WLAN_MAX_NAME_LENGTH))
        return FALSE;
    InterfaceName(guid, name, 64);
    NDISUIO_QUERY_BINDING record = {};
    DWORD nameBytes = (lstrlenW(name) + 1) * sizeof(WCHAR);
    DWORD descriptionBytes = (lstrlenW(description) + 1) * sizeof(WCHAR);
    if (sizeof record + nameBytes + descriptionBytes > size)
        return FALSE;
    record.DeviceNameOffset = sizeof record;
    record.DeviceNameLength = nameBytes;
    record.DeviceDescrOffset = sizeof record + nameBytes;
    record.DeviceDescrLength = descriptionBytes;
    memcpy(buffer, &record, sizeof record);
    memcpy(buffer + record.DeviceNameOffset, name, nameBytes);
    memcpy(buffer + record.DeviceDescrOffset, description, descriptionBytes);
    return TRUE;
}

BOOL QueryOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size)
{
    GUID guid;
    unsigned needs = WlanAnswersNeeded(oid);
    if (!device || !name || !needs || !FindInterface(device, name, &guid, nullptr, 0))
        return FALSE;
    WriteRequest(buffer, name, oid);

    WlanAnswers answers = {};
    PVOID connection = nullptr, rssi = nullptr;
    PWLAN_BSS_LIST list = nullptr;
    DWORD bytes = 0;
    if ((needs & WLAN_NEEDS_CONNECTION) &&
        g_api.QueryInterface(device, &guid, wlan_intf_opcode_current_connection, nullptr, &bytes, &connection,
                             nullptr) == ERROR_SUCCESS && connection) {
        answers.connection = static_cast<const uint8_t *>(connection);
        answers.connectionSize = bytes;
    }
    if ((needs & WLAN_NEEDS_RSSI) &&
        g_api.QueryInterface(device, &guid, wlan_intf_opcode_rssi, nullptr, &bytes, &rssi, nullptr) ==
            ERROR_SUCCESS && rssi && bytes >= sizeof(LONG)) {
        answers.hasRssi = true;
        answers.rssi = *static_cast<LONG *>(rssi);
    }
    // The level of the link's own access point is asked for only when the
    // interface gives none itself: a list costs far more than one value.
    if (answers.hasRssi)
        needs &= ~WLAN_NEEDS_BSS_LIST;
    if ((needs & WLAN_NEEDS_BSS_LIST) &&
        g_api.GetNetworkBssList(device, &guid, nullptr, dot11_BSS_type_any, FALSE, nullptr, &list) ==
            ERROR_SUCCESS && list) {
        answers.bssList = reinterpret_cast<const uint8_t *>(list);
        answers.bssListSize = list->dwTotalSize;
    }
    DWORD written = WlanOidValue(answers, oid, OidData(buffer), OidDataSize(size));
    if (connection)
        g_api.FreeMemory(connection);
    if (rssi)
        g_api.FreeMemory(rssi);
    if (list)
        g_api.FreeMemory(list);
    return written != 0;
}

// Only the scan request has a meaning here.
BOOL SetOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD)
{
    GUID guid;
    if (!device || !name || oid != OID_802_11_BSSID_LIST_SCAN || !FindInterface(device, name, &guid, nullptr, 0))
        return FALSE;
    WriteRequest(buffer, name, oid);
    return g_api.Scan(device, &guid, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

} // namespace platform

#endif
