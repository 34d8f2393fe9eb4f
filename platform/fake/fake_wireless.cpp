// fake_wireless.cpp: a wireless driver whose every answer a test sets.
#include "platform/fake/fake_wireless.h"

#include <string.h>

namespace fake {

WirelessDriver g_wireless;

namespace {

HANDLE const kDevice = reinterpret_cast<HANDLE>(0x5101);

} // namespace

void ResetWireless()
{
    g_wireless = WirelessDriver();
}

void SetWirelessAdapter(const std::wstring &name)
{
    g_wireless.present = true;
    g_wireless.bindingName = name;
}

void SetOidAnswer(NDIS_OID oid, const void *value, size_t bytes)
{
    const BYTE *p = static_cast<const BYTE *>(value);
    g_wireless.answers[oid].assign(p, p + bytes);
}

void SetOidDword(NDIS_OID oid, DWORD value)
{
    SetOidAnswer(oid, &value, sizeof value);
}

void RemoveOidAnswer(NDIS_OID oid)
{
    g_wireless.answers.erase(oid);
}

} // namespace fake

using fake::g_wireless;

namespace platform {

HANDLE OpenWirelessDevice()
{
    if (!g_wireless.present)
        return nullptr;
    g_wireless.opens++;
    return fake::kDevice;
}

void CloseWirelessDevice(HANDLE device)
{
    if (device == fake::kDevice)
        g_wireless.closes++;
}

// Answers as the driver does: the record, then the adapter's name with its
// terminating zero right after it.
BOOL QueryBinding(HANDLE device, BYTE *buffer, DWORD size)
{
    if (device != fake::kDevice || g_wireless.bindingFails)
        return FALSE;
    NDISUIO_QUERY_BINDING record = {};
    DWORD nameBytes = (DWORD)((g_wireless.bindingName.size() + 1) * sizeof(WCHAR));
    if (sizeof record + nameBytes > size)
        return FALSE;
    record.DeviceNameOffset = sizeof record;
    record.DeviceNameLength = nameBytes;
    record.DeviceDescrOffset = sizeof record + nameBytes;
    memcpy(buffer, &record, sizeof record);
    memcpy(buffer + sizeof record, g_wireless.bindingName.c_str(), nameBytes);
    return TRUE;
}

static bool Request(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer)
{
    NDISUIO_QUERY_OID *request = reinterpret_cast<NDISUIO_QUERY_OID *>(buffer);
    request->Oid = oid;
    request->ptcDeviceName = const_cast<PTCHAR>(name);
    // The driver knows its adapter only by the name the binding gave.
    return device == fake::kDevice && name && !g_wireless.bindingName.empty() &&
           g_wireless.bindingName == name;
}

BOOL QueryOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD size)
{
    g_wireless.queries.push_back(oid);
    if (!Request(device, name, oid, buffer))
        return FALSE;
    auto answer = g_wireless.answers.find(oid);
    if (answer == g_wireless.answers.end() || answer->second.size() > OidDataSize(size))
        return FALSE;
    if (!answer->second.empty())
        memcpy(OidData(buffer), answer->second.data(), answer->second.size());
    return TRUE;
}

BOOL SetOid(HANDLE device, LPCWSTR name, NDIS_OID oid, BYTE *buffer, DWORD)
{
    g_wireless.sets.push_back(oid);
    if (!Request(device, name, oid, buffer))
        return FALSE;
    return g_wireless.refusedSets.count(oid) ? FALSE : TRUE;
}

} // namespace platform
