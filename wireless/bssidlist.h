// bssidlist.h: one access point of the adapter's OID_802_11_BSSID_LIST answer, the list's decoder and SSID text; no Windows header.
#pragma once

#include <stdint.h>

#define BSSID_SSID_BYTES 32
#define BSSID_RATE_BYTES 8
// The fixed part of an entry that every field below lies in.
#define BSSID_ENTRY_MIN_BYTES 104

struct BssidEntry {
    uint8_t mac[6];                  // the access point's identity
    uint32_t ssidLength;             // at most BSSID_SSID_BYTES
    uint8_t ssid[BSSID_SSID_BYTES];  // not terminated
    uint32_t privacy;                // non-zero: encryption required
    int32_t rssi;                    // dBm
    uint32_t networkType;            // 0 FHSS, 1 DSSS, 2 OFDM 5 GHz, 3 OFDM 2.4 GHz
    uint32_t beaconPeriod;           // Kus
    uint32_t atimWindow;             // Kus
    uint32_t dsConfig;               // channel frequency, see ChannelFromFrequency
    uint32_t infrastructureMode;     // 0 ad hoc, 1 infrastructure, 2 automatic
    uint8_t rates[BSSID_RATE_BYTES]; // units of 500 kbit/s, 0 ends the list
};

// Decodes the list value (`size` bytes: a count, then entries that each
// begin with their own length) into at most `max` entries and returns how
// many. Never reads outside the bytes given: an entry shorter than the fixed
// part is skipped, and a length of 0 or one that runs past the end stops the
// walk, whatever the count says.
int DecodeBssidList(const uint8_t *data, uint32_t size, BssidEntry *entries, int max);

// An SSID's bytes as text, into `text` of BSSID_SSID_BYTES + 1: `length` of
// them, at most the field's 32, ended by a zero byte among them if any.
void SsidText(const uint8_t *bytes, uint32_t length, char *text);
