// bssidlist.h: one access point of the adapter's OID_802_11_BSSID_LIST answer, and the list's decoder.
#pragma once

#include <windows.h>

#define BSSID_SSID_BYTES 32
#define BSSID_RATE_BYTES 8
// The fixed part of an entry that every field below lies in.
#define BSSID_ENTRY_MIN_BYTES 104

struct BssidEntry {
    BYTE mac[6];                  // the access point's identity
    DWORD ssidLength;             // at most BSSID_SSID_BYTES
    BYTE ssid[BSSID_SSID_BYTES];  // not terminated
    DWORD privacy;                // non-zero: encryption required
    LONG rssi;                    // dBm
    DWORD networkType;            // 0 FHSS, 1 DSSS, 2 OFDM 5 GHz, 3 OFDM 2.4 GHz
    DWORD beaconPeriod;           // Kus
    DWORD atimWindow;             // Kus
    DWORD dsConfig;               // channel frequency, see ChannelFromFrequency
    DWORD infrastructureMode;     // 0 ad hoc, 1 infrastructure, 2 automatic
    BYTE rates[BSSID_RATE_BYTES]; // units of 500 kbit/s, 0 ends the list
};

// Decodes the list value (`size` bytes: a count, then entries that each
// begin with their own length) into at most `max` entries and returns how
// many. Never reads outside the bytes given: an entry shorter than the fixed
// part is skipped, and a length of 0 or one that runs past the end stops the
// walk, whatever the count says.
int DecodeBssidList(const BYTE *data, DWORD size, BssidEntry *entries, int max);
