// wlan_answers.h: a desktop's Native Wifi answers turned into the device driver's 802.11 OID values.
//
// The desktop has no NDIS user-mode I/O driver; its wireless source asks the
// Native Wifi API and hands the raw records it got here. No Windows header:
// the records are read at their documented offsets (checked against the SDK
// where the API is called).
#pragma once

#include <stddef.h>
#include <stdint.h>

// The raw answers for one interface; a null record is one the API refused.
struct WlanAnswers {
    const uint8_t *connection;   // WLAN_CONNECTION_ATTRIBUTES (current connection)
    uint32_t connectionSize;
    const uint8_t *bssList;      // WLAN_BSS_LIST (WlanGetNetworkBssList)
    uint32_t bssListSize;
    bool hasRssi;                // wlan_intf_opcode_rssi answered
    int32_t rssi;
};

// Which records an OID's value is made from, so only those are asked for.
#define WLAN_NEEDS_CONNECTION 1u
#define WLAN_NEEDS_BSS_LIST   2u
#define WLAN_NEEDS_RSSI       4u
unsigned WlanAnswersNeeded(uint32_t oid);

// Writes the device driver's value of `oid` at `value` (`room` bytes) and
// returns its size; 0 when the answers cannot tell it or it does not fit,
// which fails the query as the driver would.
uint32_t WlanOidValue(const WlanAnswers &answers, uint32_t oid, uint8_t *value, uint32_t room);

// Offsets of the Native Wifi records read here.
#define WLAN_BSS_LIST_ENTRIES      8
#define WLAN_BSS_ENTRY_SIZE        360
#define WLAN_BSS_SSID              0      // DOT11_SSID: length, 32 bytes
#define WLAN_BSS_BSSID             40
#define WLAN_BSS_TYPE              48
#define WLAN_BSS_PHY_TYPE          52
#define WLAN_BSS_RSSI              56
#define WLAN_BSS_BEACON_PERIOD     66     // 16-bit
#define WLAN_BSS_CAPABILITY        88     // 16-bit
#define WLAN_BSS_FREQUENCY         92     // kHz
#define WLAN_BSS_RATE_SET          96     // length in bytes, then 16-bit rates
#define WLAN_CONNECTION_STATE      0
#define WLAN_CONNECTION_SSID       520
#define WLAN_CONNECTION_BSS_TYPE   556
#define WLAN_CONNECTION_BSSID      560
#define WLAN_CONNECTION_PHY_TYPE   568
#define WLAN_CONNECTION_QUALITY    576
#define WLAN_CONNECTION_SECURITY   588    // enabled, 802.1X, authentication, cipher
#define WLAN_CONNECTION_SIZE       604
