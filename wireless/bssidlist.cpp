// bssidlist.cpp: decoding the adapter's access-point list, safely whatever its lengths say, and SSID text.
#include "wireless/bssidlist.h"

#include <string.h>

// Entries follow each other at odd lengths: read fields byte-wise, never as
// aligned words (the device's processor faults on those).
static uint32_t Field(const uint8_t *entry, uint32_t offset)
{
    uint32_t v;
    memcpy(&v, entry + offset, sizeof v);
    return v;
}

static void DecodeEntry(const uint8_t *e, BssidEntry *out)
{
    memcpy(out->mac, e + 4, sizeof out->mac);
    out->ssidLength = Field(e, 12);
    if (out->ssidLength > BSSID_SSID_BYTES)
        out->ssidLength = BSSID_SSID_BYTES;
    memcpy(out->ssid, e + 16, BSSID_SSID_BYTES);
    out->privacy = Field(e, 48);
    out->rssi = (int32_t)Field(e, 52);
    out->networkType = Field(e, 56);
    out->beaconPeriod = Field(e, 64);
    out->atimWindow = Field(e, 68);
    out->dsConfig = Field(e, 72);
    out->infrastructureMode = Field(e, 92);
    memcpy(out->rates, e + 96, BSSID_RATE_BYTES);
}

int DecodeBssidList(const uint8_t *data, uint32_t size, BssidEntry *entries, int max)
{
    if (!data || size < 4)
        return 0;
    uint32_t count = Field(data, 0);
    uint32_t position = 4;
    int decoded = 0;
    for (uint32_t i = 0; i < count && decoded < max; i++) {
        uint32_t rest = size - position;
        if (rest < 4)
            break;
        uint32_t length = Field(data, position);
        // No step forward, or an entry that runs off the end: nothing after
        // it can be found.
        if (length == 0 || length > rest)
            break;
        if (length >= BSSID_ENTRY_MIN_BYTES)
            DecodeEntry(data + position, &entries[decoded++]);
        position += length;
    }
    return decoded;
}

void SsidText(const uint8_t *bytes, uint32_t length, char *text)
{
    if (length > BSSID_SSID_BYTES)
        length = BSSID_SSID_BYTES;
    memcpy(text, bytes, length);
    text[length] = 0;
}
