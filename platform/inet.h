// inet.h: DHCP lease control, per-adapter DNS, the time zone, the connection manager and one HTTP GET, behind the platform door.
#pragma once

#include "platform/platform.h"
#include "platform/connmgr.h"

#include <wininet.h>

namespace platform {

// IP helper: an adapter's DNS servers, and its DHCP lease.
DWORD GetPerAdapterInfo(ULONG index, PIP_PER_ADAPTER_INFO info, PULONG size);
DWORD IpReleaseAddress(PIP_ADAPTER_INDEX_MAP adapter);
DWORD IpRenewAddress(PIP_ADAPTER_INDEX_MAP adapter);

// Clock: the zone's bias, for lease times.
DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION *zone);

// Connection manager. A desktop has none: establishing fails at once there.
HRESULT ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *info, HANDLE *connection);
HRESULT ConnMgrConnectionStatus(HANDLE connection, DWORD *status);
HRESULT ConnMgrReleaseConnection(HANDLE connection, LONG cache);
HRESULT ConnMgrProviderMessage(HANDLE connection, const GUID *provider, DWORD *index, DWORD message1,
                               DWORD message2, PBYTE params, ULONG size);
// The wait on a connection's handle, and the error of a failed one.
DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
DWORD GetLastError();

// Internet library: one HTTP GET.
HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR proxy, LPCWSTR bypass, DWORD flags);
HINTERNET InternetConnectW(HINTERNET session, LPCWSTR host, INTERNET_PORT port, LPCWSTR user, LPCWSTR password,
                           DWORD service, DWORD flags, DWORD context);
HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version, LPCWSTR referrer,
                           LPCWSTR *acceptTypes, DWORD flags, DWORD context);
BOOL HttpSendRequestW(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body, DWORD bodyLength);
BOOL InternetReadFile(HINTERNET file, LPVOID buffer, DWORD toRead, LPDWORD read);
BOOL InternetCloseHandle(HINTERNET handle);

} // namespace platform
