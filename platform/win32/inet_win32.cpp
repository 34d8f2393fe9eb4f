// inet_win32.cpp: DHCP lease control, DNS, the connection manager (device only) and WinInet, real.
#include "platform/inet.h"
#include "platform/text.h"
#include "platform/win32/device_sdk.h"

namespace {

#ifndef _WIN32_WCE
// The program names adapters as the device does, "{...}"; the desktop's DHCP
// client wants its own "\DEVICE\TCPIP_{...}" back.
IP_ADAPTER_INDEX_MAP DesktopAdapter(const IP_ADAPTER_INDEX_MAP *adapter)
{
    IP_ADAPTER_INDEX_MAP map = *adapter;
    static const WCHAR kPrefix[] = L"\\DEVICE\\TCPIP_";
    if (_wcsnicmp(adapter->Name, kPrefix, (sizeof kPrefix / sizeof kPrefix[0]) - 1) != 0)
        FormatText(map.Name, MAX_ADAPTER_NAME, L"%ls%ls", kPrefix, adapter->Name);
    return map;
}
#endif

} // namespace

namespace platform {

DWORD GetPerAdapterInfo(ULONG index, PIP_PER_ADAPTER_INFO info, PULONG size)
{
    return ::GetPerAdapterInfo(index, info, size);
}

DWORD IpReleaseAddress(PIP_ADAPTER_INDEX_MAP adapter)
{
#ifdef _WIN32_WCE
    return ::IpReleaseAddress(adapter);
#else
    IP_ADAPTER_INDEX_MAP map = DesktopAdapter(adapter);
    return ::IpReleaseAddress(&map);
#endif
}

DWORD IpRenewAddress(PIP_ADAPTER_INDEX_MAP adapter)
{
#ifdef _WIN32_WCE
    return ::IpRenewAddress(adapter);
#else
    IP_ADAPTER_INDEX_MAP map = DesktopAdapter(adapter);
    return ::IpRenewAddress(&map);
#endif
}

DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION *zone)
{
    return ::GetTimeZoneInformation(zone);
}

#ifdef _WIN32_WCE
HRESULT ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *info, HANDLE *connection)
{
    return ::ConnMgrEstablishConnection(info, connection);
}

HRESULT ConnMgrConnectionStatus(HANDLE connection, DWORD *status)
{
    return ::ConnMgrConnectionStatus(connection, status);
}

HRESULT ConnMgrReleaseConnection(HANDLE connection, LONG cache)
{
    return ::ConnMgrReleaseConnection(connection, cache);
}

HRESULT ConnMgrProviderMessage(HANDLE connection, const GUID *provider, DWORD *index, DWORD message1,
                               DWORD message2, PBYTE params, ULONG size)
{
    return ::ConnMgrProviderMessage(connection, provider, index, message1, message2, params, size);
}
#else
// No connection manager on a desktop: the system keeps its own connections,
// and the request goes out directly.
HRESULT ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *, HANDLE *connection)
{
    *connection = nullptr;
    return E_NOTIMPL;
}

HRESULT ConnMgrConnectionStatus(HANDLE, DWORD *status)
{
    *status = 0;
    return E_NOTIMPL;
}

HRESULT ConnMgrReleaseConnection(HANDLE, LONG)
{
    return E_NOTIMPL;
}

HRESULT ConnMgrProviderMessage(HANDLE, const GUID *, DWORD *, DWORD, DWORD, PBYTE, ULONG)
{
    return E_NOTIMPL;
}
#endif

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    return ::WaitForSingleObject(handle, milliseconds);
}

DWORD GetLastError()
{
    return ::GetLastError();
}

HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR proxy, LPCWSTR bypass, DWORD flags)
{
    return ::InternetOpenW(agent, accessType, proxy, bypass, flags);
}

HINTERNET InternetConnectW(HINTERNET session, LPCWSTR host, INTERNET_PORT port, LPCWSTR user, LPCWSTR password,
                           DWORD service, DWORD flags, DWORD context)
{
    return ::InternetConnectW(session, host, port, user, password, service, flags, context);
}

HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version, LPCWSTR referrer,
                           LPCWSTR *acceptTypes, DWORD flags, DWORD context)
{
    return ::HttpOpenRequestW(connection, verb, object, version, referrer, acceptTypes, flags, context);
}

BOOL HttpSendRequestW(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body, DWORD bodyLength)
{
    return ::HttpSendRequestW(request, headers, headersLength, body, bodyLength);
}

BOOL InternetReadFile(HINTERNET file, LPVOID buffer, DWORD toRead, LPDWORD read)
{
    return ::InternetReadFile(file, buffer, toRead, read);
}

BOOL InternetCloseHandle(HINTERNET handle)
{
    return ::InternetCloseHandle(handle);
}

} // namespace platform
