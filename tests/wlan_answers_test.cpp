// wlan_answers_test.cpp: a desktop's Native Wifi answers as the device driver's values, from recorded answers.
#include <windows.h>
#include <wlanapi.h>
#include <gtest/gtest.h>

#include "platform/wireless.h"
#include "platform/win32/wlan_answers.h"
#include "wireless/bssidlist.h"

#include <string.h>
#include <vector>

namespace {

// Radios newer than this SDK's header.
const DOT11_PHY_TYPE kVht = (DOT11_PHY_TYPE)8, kHe = (DOT11_PHY_TYPE)10;

// What a laptop in a small office heard: its own network on 2.4 and 5 GHz (BSSIDs
// ending in 1 and 2, the first with 12 rates), a hidden 5 GHz network, an open ad hoc
// peer; `n` of them in turn, the list saying `count` (0: n).
std::vector<BYTE> Office(size_t n = 4, DWORD count = 0)
{
    const struct { const char *ssid; DOT11_BSS_TYPE type; DOT11_PHY_TYPE phy; LONG rssi; USHORT capability; ULONG kHz; }
    heard[] = {
        {"office", dot11_BSS_type_infrastructure, dot11_phy_type_ht, -52, 0x0431, 2437000},
        {"office", dot11_BSS_type_infrastructure, kVht, -67, 0x1111, 5180000},
        {"", dot11_BSS_type_infrastructure, kHe, -81, 0x0011, 5745000},
        {"peer", dot11_BSS_type_independent, dot11_phy_type_hrdsss, -70, 0x0002, 2472000}};
    const USHORT rates[12] = {0x8002, 0x0000, 0x8100, 0x00FF, 0x800B, 0x8016,
                              0x000C, 0x0012, 0x0018, 0x0024, 0x0030, 0x006C};
    std::vector<BYTE> bytes(offsetof(WLAN_BSS_LIST, wlanBssEntries) + n * sizeof(WLAN_BSS_ENTRY));
    WLAN_BSS_LIST *list = reinterpret_cast<WLAN_BSS_LIST *>(bytes.data());
    list->dwTotalSize = (DWORD)bytes.size();
    list->dwNumberOfItems = count ? count : (DWORD)n;
    for (size_t i = 0; i < n; i++) {
        WLAN_BSS_ENTRY &e = list->wlanBssEntries[i];
        const auto &h = heard[i % 4];
        e = {{(ULONG)strlen(h.ssid)}, 0, {0x3C, 0x52, 0x82, 0x10, 0x20, (BYTE)(i + 1)}, h.type, h.phy, h.rssi, 0, 0,
             100, 0, 0, h.capability, h.kHz, {i ? 2u : (ULONG)sizeof rates}};
        memcpy(e.dot11Ssid.ucSSID, h.ssid, strlen(h.ssid));
        std::copy(rates, rates + 12, e.wlanRateSet.usRateSet);
    }
    return bytes;
}

class WlanAnswersTest : public ::testing::Test {
protected:
    // Connected to the access point whose BSSID ends in `last`.
    void Connect(BYTE last, DOT11_PHY_TYPE phy, DOT11_AUTH_ALGORITHM auth = DOT11_AUTH_ALGO_RSNA_PSK,
                 DOT11_CIPHER_ALGORITHM cipher = DOT11_CIPHER_ALGO_CCMP, BOOL security = TRUE)
    {
        connection_ = {wlan_interface_state_connected, wlan_connection_mode_profile, L"",
                       {{6, "office"}, dot11_BSS_type_infrastructure, {0x3C, 0x52, 0x82, 0x10, 0x20, last}, phy, 0, 80},
                       {security, FALSE, auth, cipher}};
        answers_.connection = reinterpret_cast<const uint8_t *>(&connection_);
    }
    // The value's size (0: the query fails), the value in value_.
    uint32_t Query(uint32_t oid, uint32_t room = OidDataSize(WIRELESS_BUFFER_SIZE))
    {
        answers_.bssList = list_.empty() ? nullptr : list_.data();
        answers_.bssListSize = (uint32_t)list_.size();
        return WlanOidValue(answers_, oid, value_, room);
    }
    // The DWORD value, or -1 when the query fails.
    int64_t Dword(uint32_t oid) { return Query(oid) == 4 ? (int64_t)*reinterpret_cast<DWORD *>(value_) : -1; }

    std::vector<BYTE> list_ = Office();
    WLAN_CONNECTION_ATTRIBUTES connection_;
    WlanAnswers answers_ = {nullptr, sizeof(WLAN_CONNECTION_ATTRIBUTES), nullptr, 0, false, 0};
    BYTE value_[WIRELESS_BUFFER_SIZE];
};

TEST_F(WlanAnswersTest, TheBssListInTheDevicesLayoutAsLongAsItFits)
{
    ASSERT_EQ(4u + 4 * 104, Query(OID_802_11_BSSID_LIST));
    BssidEntry e[8];
    ASSERT_EQ(4, DecodeBssidList(value_, 4 + 4 * 104, e, 8));
    EXPECT_EQ(0, memcmp("\x3C\x52\x82\x10\x20\x01", e[0].mac, 6));
    EXPECT_EQ("office", std::string((const char *)e[0].ssid, e[0].ssidLength));
    // The first 8 rates that have a place: none of 0, none above 63.5 Mbit/s.
    EXPECT_EQ(0, memcmp("\x82\x8B\x96\x0C\x12\x18\x24\x30", e[0].rates, 8));
    // Privacy, level, type by radio and band, beacon, frequency, mode by BSS type.
    const DWORD want[4][6] = {{1, (DWORD)-52, 3, 100, 2437000, 1}, {1, (DWORD)-67, 2, 100, 5180000, 1},
                              {1, (DWORD)-81, 2, 100, 5745000, 1}, {0, (DWORD)-70, 1, 100, 2472000, 0}};
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(std::vector<DWORD>(want[i], want[i] + 6),
                  (std::vector<DWORD>{e[i].privacy, (DWORD)e[i].rssi, e[i].networkType, e[i].beaconPeriod, e[i].dsConfig,
                                      e[i].infrastructureMode})) << i;
    // As on the device a list that does not fit fails: the 1 KB answer holds nine.
    // (A count beyond the list, or a list cut inside a record, is the fuzz target's.)
    const struct { size_t entries; DWORD count; uint32_t room, size; } cases[] = {
        {9, 0, OidDataSize(WIRELESS_BUFFER_SIZE), 4 + 9 * 104}, {10, 0, OidDataSize(WIRELESS_BUFFER_SIZE), 0},
        {2, 0, 4 + 2 * 104 - 1, 0}, {3, 1, 1000, 4 + 1 * 104}};
    for (auto c : cases) {
        list_ = Office(c.entries, c.count);
        EXPECT_EQ(c.size, Query(OID_802_11_BSSID_LIST, c.room)) << c.entries << " " << c.room;
    }
}

TEST_F(WlanAnswersTest, TheLinkOfAConnectedInterface)
{
    Connect(0x01, dot11_phy_type_ht);
    answers_.hasRssi = true;
    answers_.rssi = -49;
    EXPECT_EQ((DWORD)-49, Dword(OID_802_11_RSSI));
    EXPECT_TRUE(Query(OID_802_11_BSSID) == 6 && !memcmp("\x3C\x52\x82\x10\x20\x01", value_, 6));
    EXPECT_TRUE(Query(OID_802_11_SSID) == 36 && !memcmp("\6\0\0\0office", value_, 10));
    const DWORD configuration[8] = {32, 100, 0, 2437000, 16, 0, 0, 0};
    EXPECT_TRUE(Query(OID_802_11_CONFIGURATION) == 32 && !memcmp(configuration, value_, 32));
    // Mode, security and radio as the device numbers them (WPA2-PSK 7 and AES 6 have no name there):
    // WPA is 3, the device's auto-switch having no counterpart; security off is "disabled"
    // whatever the cipher; a later radio is named by its band, outside both not at all.
    auto link = [this]() {
        return std::vector<int64_t>{Dword(OID_802_11_INFRASTRUCTURE_MODE), Dword(OID_802_11_AUTHENTICATION_MODE),
                                    Dword(OID_802_11_WEP_STATUS), Dword(OID_802_11_NETWORK_TYPE_IN_USE)};
    };
    EXPECT_EQ((std::vector<int64_t>{1, 7, 6, 3}), link());
    Connect(0x02, dot11_phy_type_ht, DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_TKIP);
    EXPECT_EQ((std::vector<int64_t>{1, 3, 4, 2}), link());
    Connect(0x04, dot11_phy_type_hrdsss, DOT11_AUTH_ALGO_80211_OPEN, DOT11_CIPHER_ALGO_WEP40, FALSE);
    EXPECT_EQ((std::vector<int64_t>{1, 0, 1, 1}), link());
    Connect(0x09, kHe, (DOT11_AUTH_ALGORITHM)9, (DOT11_CIPHER_ALGORITHM)8);   // WPA3-SAE, GCMP, no band
    EXPECT_EQ((std::vector<int64_t>{1, -1, -1, -1}), link());
    // No level of its own: the connected BSS's; not in the list: from the quality, 80 %.
    answers_.hasRssi = false;
    Connect(0x02, kVht);
    EXPECT_EQ((DWORD)-67, Dword(OID_802_11_RSSI));
    Connect(0x09, kVht);
    EXPECT_EQ((DWORD)-60, Dword(OID_802_11_RSSI));

    // Without a link only the list answers: disconnected, or a record one byte short.
    for (bool disconnected : {true, false}) {
        connection_.isState = disconnected ? wlan_interface_state_disconnected : wlan_interface_state_connected;
        answers_.connectionSize = disconnected ? sizeof connection_ : WLAN_CONNECTION_SIZE - 1;
        EXPECT_EQ(0u, Query(OID_802_11_RSSI) + Query(OID_802_11_BSSID) + Query(OID_802_11_SSID)) << disconnected;
        EXPECT_EQ(4u + 4 * 104, Query(OID_802_11_BSSID_LIST)) << disconnected;
    }
}

} // namespace
