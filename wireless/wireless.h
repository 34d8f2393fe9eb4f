// wireless.h: the wireless query layer: the driver's adapter name, the signal reading of every tick, channels.
#pragma once

#include <windows.h>

#include "wireless/binding.h"

#define WIRELESS_NAME_CHARS 128
#define NO_CHANNEL (-1)
#define NO_SIGNAL (-200)            // a reading when there is none
#define SIGNAL_HISTORY_SIZE 40

// Where QuerySignal keeps its readings: SignalDbm, SignalHistory (the last
// SIGNAL_HISTORY_SIZE readings, oldest first) and WirelessSeen. They belong
// to the item's state, which points these at its own fields; the layer knows
// no more of the item.
struct SignalReadings {
    int *dbm;
    int *history;
    bool *seen;
};
extern const SignalReadings SignalState;

// The wireless adapter's comings and goings; WirelessSeen is cleared at start-up.
extern DWORD WirelessSinceTick;   // GetTickCount() when the adapter was first seen after an absence
extern DWORD WirelessLostValue;   // WirelessSinceTick minus the tick count when it went; -1 until then

// The binding query on an open device, in the query's buffer of
// WIRELESS_BUFFER_SIZE bytes; the name is empty when the query fails.
void QueryBindingName(HANDLE device, BYTE *buffer, WCHAR *name);

// Every tick: updates SignalDbm, SignalHistory and the presence values.
// Returns 1 when a wireless adapter was there, else 0.
int QuerySignal();

// The channel of a DS configuration given in kHz or in units of 100 kHz
// (adapters differ), or NO_CHANNEL.
int ChannelFromFrequency(DWORD frequency);

// One query's hold on the adapter: the device, the request buffer of
// WIRELESS_BUFFER_SIZE bytes and the first adapter's name.
struct WirelessSession {
    HANDLE device;
    BYTE *buffer;
    WCHAR name[WIRELESS_NAME_CHARS];
};

// Opens the device, allocates the buffer and reads the binding name. False,
// with nothing held, when there is no device, no memory or no adapter bound.
bool OpenWirelessSession(WirelessSession *session);
void CloseWirelessSession(WirelessSession *session);

// One OID query of the session's adapter; the value is the start of the
// answer, valid until the next request.
bool QueryWirelessOid(WirelessSession *session, DWORD oid, const BYTE **value);
bool QueryWirelessDword(WirelessSession *session, DWORD oid, DWORD *value);
bool SetWirelessOid(WirelessSession *session, DWORD oid);
