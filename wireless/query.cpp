// query.cpp: the wireless adapter's name and signal through the driver, and the channel rule.
#include "wireless/wireless.h"
#include "platform/platform.h"
#include "platform/wireless.h"

#include <stdlib.h>
#include <string.h>

DWORD WirelessSinceTick;
DWORD WirelessLostValue = 0xFFFFFFFF;

static DWORD ReadDword(const BYTE *p)
{
    DWORD v;
    memcpy(&v, p, sizeof v);
    return v;
}

// The record as the driver's header lays it out.
static_assert(offsetof(NDISUIO_QUERY_BINDING, DeviceNameOffset) == BINDING_NAME_OFFSET &&
                  offsetof(NDISUIO_QUERY_BINDING, DeviceNameLength) == BINDING_NAME_LENGTH &&
                  sizeof(NDISUIO_QUERY_BINDING) == BINDING_RECORD_BYTES,
              "the binding record's layout");

void QueryBindingName(HANDLE device, BYTE *buffer, WCHAR *name)
{
    name[0] = 0;
    if (platform::QueryBinding(device, buffer, WIRELESS_BUFFER_SIZE))
        BindingNameFromRecord(buffer, WIRELESS_BUFFER_SIZE, name, WIRELESS_NAME_CHARS);
}

bool OpenWirelessSession(WirelessSession *session)
{
    session->buffer = nullptr;
    session->name[0] = 0;
    session->device = platform::OpenWirelessDevice();
    if (!session->device)
        return false;
    session->buffer = static_cast<BYTE *>(calloc(1, WIRELESS_BUFFER_SIZE));
    if (session->buffer)
        QueryBindingName(session->device, session->buffer, session->name);
    if (!session->name[0]) {
        CloseWirelessSession(session);
        return false;
    }
    return true;
}

void CloseWirelessSession(WirelessSession *session)
{
    free(session->buffer);
    session->buffer = nullptr;
    platform::CloseWirelessDevice(session->device);
    session->device = nullptr;
}

bool QueryWirelessOid(WirelessSession *session, DWORD oid, const BYTE **value)
{
    if (!platform::QueryOid(session->device, session->name, oid, session->buffer, WIRELESS_BUFFER_SIZE))
        return false;
    *value = OidData(session->buffer);
    return true;
}

bool QueryWirelessDword(WirelessSession *session, DWORD oid, DWORD *value)
{
    const BYTE *data;
    if (!QueryWirelessOid(session, oid, &data))
        return false;
    *value = ReadDword(data);
    return true;
}

bool SetWirelessOid(WirelessSession *session, DWORD oid)
{
    return platform::SetOid(session->device, session->name, oid, session->buffer, WIRELESS_BUFFER_SIZE) != FALSE;
}

// The history moves one place towards the oldest; the newest slot is then
// the caller's to fill.
static void ShiftSignalHistory()
{
    memmove(SignalState.history, SignalState.history + 1,
            (SIGNAL_HISTORY_SIZE - 1) * sizeof SignalState.history[0]);
}

static int NoWireless()
{
    SignalState.history[SIGNAL_HISTORY_SIZE - 1] = NO_SIGNAL;
    if (*SignalState.seen) {
        *SignalState.seen = false;
        WirelessLostValue = WirelessSinceTick - platform::GetTickCount();
    }
    return 0;
}

int QuerySignal()
{
    *SignalState.dbm = NO_SIGNAL;
    HANDLE device = platform::OpenWirelessDevice();
    if (!device) {
        ShiftSignalHistory();
        return NoWireless();
    }
    BYTE *buffer = static_cast<BYTE *>(calloc(1, WIRELESS_BUFFER_SIZE));
    if (!buffer) {
        platform::CloseWirelessDevice(device);
        return 1;
    }

    WCHAR name[WIRELESS_NAME_CHARS];
    QueryBindingName(device, buffer, name);
    if (!name[0]) {
        free(buffer);
        platform::CloseWirelessDevice(device);
        ShiftSignalHistory();
        return NoWireless();
    }

    if (!*SignalState.seen) {
        *SignalState.seen = true;
        WirelessSinceTick = platform::GetTickCount();
    }

    int reading = NO_SIGNAL;
    if (platform::QueryOid(device, name, OID_802_11_RSSI, buffer, WIRELESS_BUFFER_SIZE))
        reading = (LONG)ReadDword(OidData(buffer));
    *SignalState.dbm = reading;
    ShiftSignalHistory();
    SignalState.history[SIGNAL_HISTORY_SIZE - 1] = reading;

    // An adapter that is not associated still reports a level: the history
    // keeps it, the strip shows no signal.
    if (!platform::QueryOid(device, name, OID_802_11_BSSID, buffer, WIRELESS_BUFFER_SIZE))
        *SignalState.dbm = NO_SIGNAL;
    free(buffer);
    platform::CloseWirelessDevice(device);
    return 1;
}

// Channels 1-14 in 5 MHz steps from 2412 MHz, channel 14 included at
// 2477 MHz; only these exact values are known.
int ChannelFromFrequency(DWORD frequency)
{
    for (int channel = 1; channel <= 14; channel++) {
        DWORD kHz = 2412000 + 5000 * (channel - 1);
        if (frequency == kHz || frequency == kHz / 100)
            return channel;
    }
    return NO_CHANNEL;
}
