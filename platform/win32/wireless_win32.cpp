// wireless_win32.cpp: the wireless driver on the device: its NDIS user-mode I/O driver (the desktop's is wlan_win32.cpp).
#include "platform/wireless.h"

namespace platform {

#ifdef _WIN32_WCE

HANDLE OpenWirelessDevice()
{
    HANDLE device = CreateFileW(L"UIO1:", 0, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return device == INVALID_HANDLE_VALUE ? nullptr : device;
}

void CloseWirelessDevice(HANDLE device)
{
    if (device)
        CloseHandle(device);
}

BOOL QueryBinding(HANDLE device, BYTE *buffer, DWORD size)
{
    NDISUIO_QUERY_BINDING *binding = reinterpret_cast<NDISUIO_QUERY_BINDING *>(buffer);
    binding->BindingIndex = 0;
    DWORD returned = 0;
    return DeviceIoControl(device, IOCTL_NDISUIO_QUERY_BINDING, buffer, sizeof *binding, buffer, size,
                           &returned, nullptr);
}

// The query and set records start alike: the OID, then the adapter's name;
// the value fills the rest of the one buffer, both ways.
static BOOL OidRequest(HANDLE device, DWORD code, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size)
{
    NDISUIO_QUERY_OID *request = reinterpret_cast<NDISUIO_QUERY_OID *>(buffer);
    request->Oid = oid;
    request->ptcDeviceName = const_cast<PTCHAR>(name);
    DWORD returned = 0;
    return DeviceIoControl(device, code, buffer, size, buffer, size, &returned, nullptr);
}

BOOL QueryOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size)
{
    return OidRequest(device, IOCTL_NDISUIO_QUERY_OID_VALUE, name, oid, buffer, size);
}

BOOL SetOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size)
{
    return OidRequest(device, IOCTL_NDISUIO_SET_OID_VALUE, name, oid, buffer, size);
}

#endif

} // namespace platform
