// fake_wireless.h: the fake device's wireless driver, scripted by the tests.
#pragma once

#include "platform/wireless.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace fake {

struct WirelessDriver {
    bool present;                  // "UIO1:" opens
    std::wstring bindingName;      // the first bound adapter; empty: none bound
    bool bindingFails;
    // Answers to queries by OID; a query of any other OID fails, as does one
    // whose answer does not fit the caller's buffer.
    std::map<NDIS_OID, std::vector<BYTE>> answers;
    std::set<NDIS_OID> refusedSets;
    std::vector<NDIS_OID> queries, sets;   // requests made, in order
    int opens, closes;
};

extern WirelessDriver g_wireless;

// No driver, nothing recorded (fake::Reset calls it).
void ResetWireless();
// A driver bound to `name`.
void SetWirelessAdapter(const std::wstring &name);
void SetOidAnswer(NDIS_OID oid, const void *value, size_t bytes);
void SetOidDword(NDIS_OID oid, DWORD value);
void RemoveOidAnswer(NDIS_OID oid);

} // namespace fake
