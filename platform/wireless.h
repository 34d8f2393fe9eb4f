// wireless.h: the wireless driver as the device offers it: the NDIS user-mode I/O device and its three requests.
//
// On the device this is the driver "UIO1:" reached with DeviceIoControl. Every
// request works in one caller-owned buffer that holds the request record and
// receives the answer, so a value that does not fit makes the request fail.
#pragma once

#include <windows.h>
#include <stddef.h>

#include "platform/win32/device_sdk.h"

// One buffer serves every request of a query, in and out.
#define WIRELESS_BUFFER_SIZE 1024

namespace platform {

// "UIO1:" opened anew for one query; null when there is no wireless support.
HANDLE OpenWirelessDevice();
void CloseWirelessDevice(HANDLE device);

// The binding query for binding 0 (the first bound adapter): on success
// `buffer` holds the NDISUIO_QUERY_BINDING record followed by the names it
// points at.
BOOL QueryBinding(HANDLE device, BYTE *buffer, DWORD size);

// One OID request for the adapter `name`: the record is written at the start
// of `buffer`, the value is read from (set) or written to (query) its Data.
BOOL QueryOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size);
BOOL SetOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size);

} // namespace platform

// Where an OID's value starts in a request buffer, and how much room it has.
inline BYTE *OidData(BYTE *buffer)
{
    return buffer + offsetof(NDISUIO_QUERY_OID, Data);
}

inline DWORD OidDataSize(DWORD bufferSize)
{
    return bufferSize - (DWORD)offsetof(NDISUIO_QUERY_OID, Data);
}
