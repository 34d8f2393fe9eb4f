// wireless.h: the wireless driver as the device offers it: the NDIS user-mode I/O device and its three requests.
//
// On the device this is the driver "UIO1:" reached with DeviceIoControl. Every
// request works in one caller-owned buffer that holds the request record and
// receives the answer, so a value that does not fit makes the request fail.
#pragma once

#include <windows.h>
#include <ntddndis.h>
#include <stddef.h>

#ifdef _WIN32_WCE
#include <nuiouser.h>
#else
// The driver's request records and control codes, as its header spells them.
#define IOCTL_NDISUIO_QUERY_BINDING   0x0012080C
#define IOCTL_NDISUIO_QUERY_OID_VALUE 0x00120804
#define IOCTL_NDISUIO_SET_OID_VALUE   0x00120814

struct NDISUIO_QUERY_BINDING {
    ULONG BindingIndex;
    ULONG DeviceNameOffset;     // bytes from the start of the record
    ULONG DeviceNameLength;     // bytes of UTF-16 text
    ULONG DeviceDescrOffset;
    ULONG DeviceDescrLength;
};

struct NDISUIO_QUERY_OID {
    NDIS_OID Oid;
    PTCHAR ptcDeviceName;
    UCHAR Data[sizeof(ULONG)];  // the value runs on to the end of the buffer
};
typedef NDISUIO_QUERY_OID NDISUIO_SET_OID;
#endif

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
