// wlan_answers.cpp: a desktop's Native Wifi records translated into the device driver's OID values.
#include "platform/win32/wlan_answers.h"

#include <string.h>

namespace {

// The device driver's OIDs, as its header numbers them.
const uint32_t kBssid = 0x0D010101, kSsid = 0x0D010102, kInfrastructureMode = 0x0D010108,
               kAuthenticationMode = 0x0D010118, kWepStatus = 0x0D01011B, kNetworkTypeInUse = 0x0D010204,
               kRssi = 0x0D010206, kConfiguration = 0x0D010211, kBssidList = 0x0D010217;

const uint32_t kConnected = 1;            // wlan_interface_state_connected
const uint32_t kEntryBytes = 104;         // NDIS_WLAN_BSSID without information elements
const uint32_t kNoNetworkType = 0xFFFFFFFF;

uint32_t Read32(const uint8_t *p)
{
    uint32_t v;
    memcpy(&v, p, 4);
    return v;
}

uint16_t Read16(const uint8_t *p)
{
    uint16_t v;
    memcpy(&v, p, 2);
    return v;
}

void Write32(uint8_t *p, uint32_t v)
{
    memcpy(p, &v, 4);
}

uint32_t Put32(uint8_t *value, uint32_t room, uint32_t v)
{
    if (room < 4)
        return 0;
    Write32(value, v);
    return 4;
}

const uint8_t *Connection(const WlanAnswers &a)
{
    if (!a.connection || a.connectionSize < WLAN_CONNECTION_SIZE)
        return nullptr;
    return Read32(a.connection + WLAN_CONNECTION_STATE) == kConnected ? a.connection : nullptr;
}

// The whole entries the list holds, whatever its count says.
uint32_t BssCount(const WlanAnswers &a)
{
    if (!a.bssList || a.bssListSize < WLAN_BSS_LIST_ENTRIES)
        return 0;
    uint32_t count = Read32(a.bssList + 4);
    uint32_t fit = (a.bssListSize - WLAN_BSS_LIST_ENTRIES) / WLAN_BSS_ENTRY_SIZE;
    return count < fit ? count : fit;
}

const uint8_t *BssEntry(const WlanAnswers &a, uint32_t i)
{
    return a.bssList + WLAN_BSS_LIST_ENTRIES + i * WLAN_BSS_ENTRY_SIZE;
}

// The list's entry of the access point the interface is connected to.
const uint8_t *ConnectedBss(const WlanAnswers &a)
{
    const uint8_t *c = Connection(a);
    if (!c)
        return nullptr;
    for (uint32_t i = 0, n = BssCount(a); i < n; i++)
        if (memcmp(BssEntry(a, i) + WLAN_BSS_BSSID, c + WLAN_CONNECTION_BSSID, 6) == 0)
            return BssEntry(a, i);
    return nullptr;
}

// DOT11_BSS_TYPE (1 infrastructure, 2 independent, 3 any) as the driver's mode.
uint32_t InfrastructureMode(uint32_t bssType)
{
    return bssType == 2 ? 0 : bssType == 1 ? 1 : 2;
}

// DOT11_PHY_TYPE as the driver's network type in use. The driver names only
// FHSS, DSSS and OFDM at 5 or 2.4 GHz: the later radios are named by the
// band they are on, and what lies on no band of its (6 GHz, 60 GHz) is unknown.
uint32_t NetworkType(uint32_t phy, uint32_t kHz)
{
    bool band24 = kHz >= 2400000 && kHz < 2500000;
    bool band5 = kHz >= 4900000 && kHz < 5900000;
    switch (phy) {
    case 1:   // FHSS
        return 0;
    case 2:   // DSSS
    case 5:   // HR/DSSS (802.11b)
        return 1;
    case 4:   // OFDM (802.11a)
        return 2;
    case 6:   // ERP (802.11g)
        return 3;
    case 8:   // VHT (802.11ac): 5 GHz only
        return 2;
    case 7:   // HT (802.11n)
    case 10:  // HE (802.11ax)
    case 11:  // EHT (802.11be)
        return band5 ? 2 : band24 ? 3 : kNoNetworkType;
    }
    return kNoNetworkType;
}

uint32_t SignalFromQuality(uint32_t quality)
{
    // The API's own scale: 0 is -100 dBm, 100 is -50 dBm.
    return (uint32_t)((int32_t)(quality > 100 ? 100 : quality) / 2 - 100);
}

// One NDIS_WLAN_BSSID entry of the fixed size, from a WLAN_BSS_ENTRY.
void PutEntry(uint8_t *e, const uint8_t *bss)
{
    memset(e, 0, kEntryBytes);
    Write32(e, kEntryBytes);
    memcpy(e + 4, bss + WLAN_BSS_BSSID, 6);
    uint32_t ssidLength = Read32(bss + WLAN_BSS_SSID);
    if (ssidLength > 32)
        ssidLength = 32;
    Write32(e + 12, ssidLength);
    memcpy(e + 16, bss + WLAN_BSS_SSID + 4, ssidLength);
    Write32(e + 48, (Read16(bss + WLAN_BSS_CAPABILITY) & 0x0010) ? 1 : 0);   // the privacy bit
    Write32(e + 52, Read32(bss + WLAN_BSS_RSSI));
    uint32_t kHz = Read32(bss + WLAN_BSS_FREQUENCY);
    Write32(e + 56, NetworkType(Read32(bss + WLAN_BSS_PHY_TYPE), kHz));
    Write32(e + 60, 32);                                    // configuration length
    Write32(e + 64, Read16(bss + WLAN_BSS_BEACON_PERIOD));
    Write32(e + 72, kHz);
    Write32(e + 76, 16);                                    // no frequency hopping
    Write32(e + 92, InfrastructureMode(Read32(bss + WLAN_BSS_TYPE)));
    // The API's rates are 16-bit with the basic flag on top; the driver's
    // are bytes with it in bit 7, so rates above 63.5 Mbit/s have no place.
    uint32_t rates = Read32(bss + WLAN_BSS_RATE_SET) / 2;
    if (rates > 126)
        rates = 126;
    int put = 0;
    for (uint32_t i = 0; i < rates && put < 8; i++) {
        uint16_t r = Read16(bss + WLAN_BSS_RATE_SET + 4 + 2 * i);
        if ((r & 0x7FFF) == 0 || (r & 0x7FFF) > 0x7F)
            continue;
        e[96 + put++] = (uint8_t)((r & 0x7F) | ((r & 0x8000) ? 0x80 : 0));
    }
}

uint32_t BssidList(const WlanAnswers &a, uint8_t *value, uint32_t room)
{
    if (!a.bssList)
        return 0;
    uint32_t n = BssCount(a);
    // As on the device: a list that does not fit the caller's buffer fails.
    if (room < 4 || n > (room - 4) / kEntryBytes)
        return 0;
    Write32(value, n);
    for (uint32_t i = 0; i < n; i++)
        PutEntry(value + 4 + i * kEntryBytes, BssEntry(a, i));
    return 4 + n * kEntryBytes;
}

} // namespace

unsigned WlanAnswersNeeded(uint32_t oid)
{
    switch (oid) {
    case kRssi:
        return WLAN_NEEDS_RSSI | WLAN_NEEDS_CONNECTION | WLAN_NEEDS_BSS_LIST;
    case kNetworkTypeInUse:
    case kConfiguration:
        return WLAN_NEEDS_CONNECTION | WLAN_NEEDS_BSS_LIST;
    case kBssidList:
        return WLAN_NEEDS_BSS_LIST;
    case kBssid:
    case kSsid:
    case kInfrastructureMode:
    case kAuthenticationMode:
    case kWepStatus:
        return WLAN_NEEDS_CONNECTION;
    }
    return 0;
}

uint32_t WlanOidValue(const WlanAnswers &a, uint32_t oid, uint8_t *value, uint32_t room)
{
    if (oid == kBssidList)
        return BssidList(a, value, room);
    // Everything else is about the link: without one the driver has nothing
    // to tell (an adapter that is not associated fails the BSSID query).
    const uint8_t *c = Connection(a);
    if (!c)
        return 0;
    const uint8_t *bss = ConnectedBss(a);
    uint32_t kHz = bss ? Read32(bss + WLAN_BSS_FREQUENCY) : 0;
    switch (oid) {
    case kRssi:
        if (a.hasRssi)
            return Put32(value, room, (uint32_t)a.rssi);
        if (bss)
            return Put32(value, room, Read32(bss + WLAN_BSS_RSSI));
        return Put32(value, room, SignalFromQuality(Read32(c + WLAN_CONNECTION_QUALITY)));
    case kBssid:
        if (room < 6)
            return 0;
        memcpy(value, c + WLAN_CONNECTION_BSSID, 6);
        return 6;
    case kSsid: {
        if (room < 36)
            return 0;
        uint32_t length = Read32(c + WLAN_CONNECTION_SSID);
        memset(value, 0, 36);
        Write32(value, length > 32 ? 32 : length);
        memcpy(value + 4, c + WLAN_CONNECTION_SSID + 4, length > 32 ? 32 : length);
        return 36;
    }
    case kInfrastructureMode:
        return Put32(value, room, InfrastructureMode(Read32(c + WLAN_CONNECTION_BSS_TYPE)));
    case kAuthenticationMode: {
        // DOT11_AUTH_ALGORITHM 1-7 (open .. RSNA-PSK) are the driver's 0-6 less
        // auto-switch, which the API never reports: WPA2 is 6, WPA2-PSK 7 there.
        static const uint32_t modes[] = {0, 1, 3, 4, 5, 6, 7};
        uint32_t algorithm = Read32(c + WLAN_CONNECTION_SECURITY + 8);
        if (algorithm < 1 || algorithm > 7)
            return 0;
        return Put32(value, room, modes[algorithm - 1]);
    }
    case kWepStatus: {
        // NDIS encryption status: 0 WEP, 1 disabled, 4 TKIP, 6 AES.
        uint32_t cipher = Read32(c + WLAN_CONNECTION_SECURITY + 12);
        if (!Read32(c + WLAN_CONNECTION_SECURITY) || cipher == 0)
            return Put32(value, room, 1);
        if (cipher == 1 || cipher == 5 || cipher == 0x101)
            return Put32(value, room, 0);
        if (cipher == 2)
            return Put32(value, room, 4);
        if (cipher == 4)
            return Put32(value, room, 6);
        return 0;
    }
    case kNetworkTypeInUse: {
        uint32_t type = NetworkType(Read32(c + WLAN_CONNECTION_PHY_TYPE), kHz);
        return type == kNoNetworkType ? 0 : Put32(value, room, type);
    }
    case kConfiguration:
        // Length, beacon period, ATIM window (none outside ad hoc), frequency
        // in kHz, then a frequency-hopping record of nothing.
        if (!bss || room < 32)
            return 0;
        memset(value, 0, 32);
        Write32(value, 32);
        Write32(value + 4, Read16(bss + WLAN_BSS_BEACON_PERIOD));
        Write32(value + 12, kHz);
        Write32(value + 16, 16);
        return 32;
    }
    return 0;
}
