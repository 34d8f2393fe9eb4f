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

// One access point as WlanGetNetworkBssList reports it.
struct Heard {
    BYTE last;              // the BSSID's last byte
    const char *ssid;       // "" for a hidden network
    DOT11_BSS_TYPE type;
    DOT11_PHY_TYPE phy;
    LONG rssi;
    USHORT capability;      // 0x0010: privacy
    ULONG kHz;
    std::vector<USHORT> rates;
};

// What a laptop in a small office answered: its own network on 2.4 and
// 5 GHz, a hidden 5 GHz network, an open 802.11g hotspot, an ad hoc peer.
const Heard kOffice[] = {
    {0x01, "office", dot11_BSS_type_infrastructure, dot11_phy_type_ht, -52, 0x0431, 2437000,
     {0x8002, 0x8004, 0x800B, 0x8016, 0x000C, 0x0012, 0x0018, 0x0024, 0x0030, 0x0048, 0x0060, 0x006C}},
    {0x02, "office", dot11_BSS_type_infrastructure, kVht, -67, 0x1111, 5180000,
     {0x800C, 0x0012, 0x8018, 0x0024, 0x8030, 0x0048, 0x0060, 0x006C}},
    {0x03, "", dot11_BSS_type_infrastructure, kHe, -81, 0x0011, 5745000, {0x800C, 0x8018, 0x8030}},
    {0x04, "StationCafe", dot11_BSS_type_infrastructure, dot11_phy_type_erp, -88, 0x0401, 2412000,
     {0x8002, 0x8004, 0x800B, 0x8016, 0x000C}},
    {0x05, "peer", dot11_BSS_type_independent, dot11_phy_type_hrdsss, -70, 0x0002, 2472000, {0x8002, 0x8004}},
};

std::vector<BYTE> BssList(const Heard *heard, size_t n, DWORD count = 0xFFFFFFFF)
{
    std::vector<BYTE> bytes(offsetof(WLAN_BSS_LIST, wlanBssEntries) + n * sizeof(WLAN_BSS_ENTRY));
    WLAN_BSS_LIST *list = reinterpret_cast<WLAN_BSS_LIST *>(bytes.data());
    list->dwTotalSize = (DWORD)bytes.size();
    list->dwNumberOfItems = count == 0xFFFFFFFF ? (DWORD)n : count;
    for (size_t i = 0; i < n; i++) {
        WLAN_BSS_ENTRY &e = list->wlanBssEntries[i];
        const Heard &h = heard[i];
        e.dot11Ssid.uSSIDLength = (ULONG)strlen(h.ssid);
        memcpy(e.dot11Ssid.ucSSID, h.ssid, strlen(h.ssid));
        const BYTE mac[6] = {0x3C, 0x52, 0x82, 0x10, 0x20, h.last};
        memcpy(e.dot11Bssid, mac, 6);
        e.dot11BssType = h.type;
        e.dot11BssPhyType = h.phy;
        e.lRssi = h.rssi;
        e.uLinkQuality = 60;
        e.usBeaconPeriod = 100;
        e.usCapabilityInformation = h.capability;
        e.ulChCenterFrequency = h.kHz;
        e.wlanRateSet.uRateSetLength = (ULONG)(h.rates.size() * 2);
        for (size_t r = 0; r < h.rates.size(); r++)
            e.wlanRateSet.usRateSet[r] = h.rates[r];
    }
    return bytes;
}

WLAN_CONNECTION_ATTRIBUTES Connected(BYTE last, DOT11_PHY_TYPE phy, DOT11_AUTH_ALGORITHM auth,
                                     DOT11_CIPHER_ALGORITHM cipher, bool security = true)
{
    WLAN_CONNECTION_ATTRIBUTES c = {};
    c.isState = wlan_interface_state_connected;
    c.wlanConnectionMode = wlan_connection_mode_profile;
    WLAN_ASSOCIATION_ATTRIBUTES &a = c.wlanAssociationAttributes;
    a.dot11Ssid.uSSIDLength = 6;
    memcpy(a.dot11Ssid.ucSSID, "office", 6);
    a.dot11BssType = dot11_BSS_type_infrastructure;
    const BYTE mac[6] = {0x3C, 0x52, 0x82, 0x10, 0x20, last};
    memcpy(a.dot11Bssid, mac, 6);
    a.dot11PhyType = phy;
    a.wlanSignalQuality = 80;
    c.wlanSecurityAttributes.bSecurityEnabled = security;
    c.wlanSecurityAttributes.dot11AuthAlgorithm = auth;
    c.wlanSecurityAttributes.dot11CipherAlgorithm = cipher;
    return c;
}

class WlanAnswersTest : public ::testing::Test {
protected:
    void Answers(const std::vector<BYTE> *list, const WLAN_CONNECTION_ATTRIBUTES *connection, bool rssi = false,
                 LONG dbm = 0)
    {
        answers_ = WlanAnswers();
        if (list) {
            list_ = *list;
            answers_.bssList = list_.data();
            answers_.bssListSize = (uint32_t)list_.size();
        }
        if (connection) {
            connection_ = *connection;
            answers_.connection = reinterpret_cast<const uint8_t *>(&connection_);
            answers_.connectionSize = sizeof connection_;
        }
        answers_.hasRssi = rssi;
        answers_.rssi = dbm;
    }
    // The value's size (0: the query fails), the value in value_.
    uint32_t Query(uint32_t oid, uint32_t room = OidDataSize(WIRELESS_BUFFER_SIZE))
    {
        memset(value_, 0xCC, sizeof value_);
        return WlanOidValue(answers_, oid, value_, room);
    }
    DWORD Dword()
    {
        DWORD v;
        memcpy(&v, value_, 4);
        return v;
    }

    WlanAnswers answers_;
    std::vector<BYTE> list_;
    WLAN_CONNECTION_ATTRIBUTES connection_;
    BYTE value_[WIRELESS_BUFFER_SIZE];
};

TEST_F(WlanAnswersTest, TheBssListInTheDevicesLayout)
{
    std::vector<BYTE> list = BssList(kOffice, 5);
    Answers(&list, nullptr);
    ASSERT_EQ(4u + 5 * 104, Query(OID_802_11_BSSID_LIST));
    BssidEntry e[8];
    ASSERT_EQ(5, DecodeBssidList(value_, 4 + 5 * 104, e, 8));
    const struct {
        const char *ssid;
        DWORD privacy;
        LONG rssi;
        DWORD type, kHz, mode;
        BYTE rates[8];
    } expected[] = {
        {"office", 1, -52, 3, 2437000, 1, {0x82, 0x84, 0x8B, 0x96, 0x0C, 0x12, 0x18, 0x24}},
        {"office", 1, -67, 2, 5180000, 1, {0x8C, 0x12, 0x98, 0x24, 0xB0, 0x48, 0x60, 0x6C}},
        {"", 1, -81, 2, 5745000, 1, {0x8C, 0x98, 0xB0}},
        {"StationCafe", 0, -88, 3, 2412000, 1, {0x82, 0x84, 0x8B, 0x96, 0x0C}},
        {"peer", 0, -70, 1, 2472000, 0, {0x82, 0x84}},
    };
    for (int i = 0; i < 5; i++) {
        SCOPED_TRACE(i);
        EXPECT_EQ(0x3C, e[i].mac[0]);
        EXPECT_EQ(i + 1, e[i].mac[5]);
        EXPECT_EQ(strlen(expected[i].ssid), e[i].ssidLength);
        EXPECT_EQ(0, memcmp(expected[i].ssid, e[i].ssid, e[i].ssidLength));
        EXPECT_EQ(expected[i].privacy, e[i].privacy);
        EXPECT_EQ(expected[i].rssi, e[i].rssi);
        EXPECT_EQ(expected[i].type, e[i].networkType);
        EXPECT_EQ(100u, e[i].beaconPeriod);
        EXPECT_EQ(0u, e[i].atimWindow);
        EXPECT_EQ(expected[i].kHz, e[i].dsConfig);
        EXPECT_EQ(expected[i].mode, e[i].infrastructureMode);
        EXPECT_EQ(0, memcmp(expected[i].rates, e[i].rates, 8));
    }
}

TEST_F(WlanAnswersTest, AListThatDoesNotFitFailsAsTheDriversDoes)
{
    std::vector<Heard> many;
    for (BYTE i = 0; i < 12; i++)
        many.push_back({i, "x", dot11_BSS_type_infrastructure, dot11_phy_type_erp, -60, 0, 2437000, {2}});
    const struct {
        const char *what;
        size_t entries;
        DWORD count;
        uint32_t room, size;
    } cases[] = {
        {"nine fill the driver's answer", 9, 0xFFFFFFFF, OidDataSize(WIRELESS_BUFFER_SIZE), 4 + 9 * 104},
        {"ten do not", 10, 0xFFFFFFFF, OidDataSize(WIRELESS_BUFFER_SIZE), 0},
        {"a room of exactly two", 2, 0xFFFFFFFF, 4 + 2 * 104, 4 + 2 * 104},
        {"a room one byte short", 2, 0xFFFFFFFF, 4 + 2 * 104 - 1, 0},
        {"an empty list", 0, 0xFFFFFFFF, 4, 4},
        {"a count beyond the records", 2, 40, OidDataSize(WIRELESS_BUFFER_SIZE), 4 + 2 * 104},
        {"a count below them", 3, 1, OidDataSize(WIRELESS_BUFFER_SIZE), 4 + 1 * 104},
    };
    for (auto c : cases) {
        std::vector<BYTE> list = BssList(many.data(), c.entries, c.count);
        Answers(&list, nullptr);
        EXPECT_EQ(c.size, Query(OID_802_11_BSSID_LIST, c.room)) << c.what;
    }
    Answers(nullptr, nullptr);
    EXPECT_EQ(0u, Query(OID_802_11_BSSID_LIST));
    std::vector<BYTE> cut = BssList(many.data(), 3);
    cut.resize(cut.size() - 1);   // a total size that ends inside the last record
    Answers(&cut, nullptr);
    EXPECT_EQ(4u + 2 * 104, Query(OID_802_11_BSSID_LIST));
}

TEST_F(WlanAnswersTest, TheLinkOfAConnectedInterface)
{
    std::vector<BYTE> list = BssList(kOffice, 5);
    WLAN_CONNECTION_ATTRIBUTES c = Connected(0x01, dot11_phy_type_ht, DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP);
    Answers(&list, &c, true, -49);
    ASSERT_EQ(4u, Query(OID_802_11_RSSI));
    EXPECT_EQ((DWORD)-49, Dword());
    ASSERT_EQ(6u, Query(OID_802_11_BSSID));
    EXPECT_EQ(0, memcmp("\x3C\x52\x82\x10\x20\x01", value_, 6));
    ASSERT_EQ(36u, Query(OID_802_11_SSID));
    EXPECT_EQ(6u, Dword());
    EXPECT_EQ(0, memcmp("office", value_ + 4, 6));
    ASSERT_EQ(32u, Query(OID_802_11_CONFIGURATION));
    const DWORD configuration[8] = {32, 100, 0, 2437000, 16, 0, 0, 0};
    EXPECT_EQ(0, memcmp(configuration, value_, 32));
    const struct {
        uint32_t oid;
        DWORD value;
    } dwords[] = {{OID_802_11_INFRASTRUCTURE_MODE, 1}, {OID_802_11_AUTHENTICATION_MODE, 7},
                  {OID_802_11_WEP_STATUS, 6}, {OID_802_11_NETWORK_TYPE_IN_USE, 3}};
    for (auto d : dwords) {
        ASSERT_EQ(4u, Query(d.oid)) << std::hex << d.oid;
        EXPECT_EQ(d.value, Dword()) << std::hex << d.oid;
    }
    EXPECT_EQ(0u, Query(OID_802_11_BSSID, 5));   // no room
    EXPECT_EQ(0u, Query(0x0D010203));            // an OID it has no answer for
}

TEST_F(WlanAnswersTest, SignalFromTheBestAnswerThereIs)
{
    std::vector<BYTE> list = BssList(kOffice, 5);
    WLAN_CONNECTION_ATTRIBUTES c = Connected(0x02, kVht, DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP);
    Answers(&list, &c);   // no level of its own: the connected BSS's
    ASSERT_EQ(4u, Query(OID_802_11_RSSI));
    EXPECT_EQ((DWORD)-67, Dword());
    c.wlanAssociationAttributes.dot11Bssid[5] = 0x09;   // not in the list: from the quality, 80 %
    Answers(&list, &c);
    ASSERT_EQ(4u, Query(OID_802_11_RSSI));
    EXPECT_EQ((DWORD)-60, Dword());
    EXPECT_EQ(0u, Query(OID_802_11_CONFIGURATION));   // its frequency is unknown
}

TEST_F(WlanAnswersTest, SecurityAndRadioTables)
{
    std::vector<BYTE> list = BssList(kOffice, 5);
    const struct {
        DOT11_AUTH_ALGORITHM auth;
        DOT11_CIPHER_ALGORITHM cipher;
        bool security;
        int mode, status;   // -1: the query fails
    } security[] = {
        {DOT11_AUTH_ALGO_80211_OPEN, DOT11_CIPHER_ALGO_NONE, false, 0, 1},
        {DOT11_AUTH_ALGO_80211_OPEN, DOT11_CIPHER_ALGO_WEP40, true, 0, 0},
        {DOT11_AUTH_ALGO_80211_SHARED_KEY, DOT11_CIPHER_ALGO_WEP104, true, 1, 0},
        {DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_TKIP, true, 3, 4},
        {DOT11_AUTH_ALGO_WPA_PSK, DOT11_CIPHER_ALGO_WEP, true, 4, 0},
        {DOT11_AUTH_ALGO_WPA_NONE, DOT11_CIPHER_ALGO_CCMP, true, 5, 6},
        {DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP, true, 6, 6},
        {(DOT11_AUTH_ALGORITHM)9, (DOT11_CIPHER_ALGORITHM)8, true, -1, -1},   // WPA3-SAE, GCMP
    };
    for (auto s : security) {
        WLAN_CONNECTION_ATTRIBUTES c = Connected(0x01, dot11_phy_type_ht, s.auth, s.cipher, s.security);
        Answers(&list, &c);
        EXPECT_EQ(s.mode < 0 ? 0u : 4u, Query(OID_802_11_AUTHENTICATION_MODE)) << s.auth;
        if (s.mode >= 0) {
            EXPECT_EQ((DWORD)s.mode, Dword()) << s.auth;
        }
        EXPECT_EQ(s.status < 0 ? 0u : 4u, Query(OID_802_11_WEP_STATUS)) << s.cipher;
        if (s.status >= 0) {
            EXPECT_EQ((DWORD)s.status, Dword()) << s.cipher;
        }
    }
    const struct {
        BYTE last;              // the connected BSS: its frequency decides for the later radios
        DOT11_PHY_TYPE phy;
        int type;
    } radios[] = {
        {1, dot11_phy_type_fhss, 0}, {1, dot11_phy_type_dsss, 1}, {1, dot11_phy_type_hrdsss, 1},
        {2, dot11_phy_type_ofdm, 2}, {1, dot11_phy_type_erp, 3},  {1, dot11_phy_type_ht, 3},
        {2, dot11_phy_type_ht, 2},   {2, kVht, 2},  {3, kHe, 2},
        {9, kHe, -1},  {1, dot11_phy_type_irbaseband, -1}, {1, (DOT11_PHY_TYPE)9, -1},
    };
    for (auto r : radios) {
        WLAN_CONNECTION_ATTRIBUTES c = Connected(r.last, r.phy, DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP);
        Answers(&list, &c);
        EXPECT_EQ(r.type < 0 ? 0u : 4u, Query(OID_802_11_NETWORK_TYPE_IN_USE)) << r.phy << " on " << (int)r.last;
        if (r.type >= 0) {
            EXPECT_EQ((DWORD)r.type, Dword()) << r.phy << " on " << (int)r.last;
        }
    }
}

TEST_F(WlanAnswersTest, WithoutALinkOnlyTheListAnswers)
{
    std::vector<BYTE> list = BssList(kOffice, 2);
    WLAN_CONNECTION_ATTRIBUTES c = Connected(0x01, dot11_phy_type_ht, DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP);
    c.isState = wlan_interface_state_disconnected;
    const WLAN_CONNECTION_ATTRIBUTES *connections[] = {nullptr, &c};
    const uint32_t link[] = {OID_802_11_RSSI, OID_802_11_BSSID, OID_802_11_SSID, OID_802_11_CONFIGURATION,
                             OID_802_11_INFRASTRUCTURE_MODE, OID_802_11_AUTHENTICATION_MODE,
                             OID_802_11_WEP_STATUS, OID_802_11_NETWORK_TYPE_IN_USE};
    for (auto connection : connections) {
        Answers(&list, connection, true, -40);
        for (uint32_t oid : link)
            EXPECT_EQ(0u, Query(oid)) << std::hex << oid;
        EXPECT_EQ(4u + 2 * 104, Query(OID_802_11_BSSID_LIST));
    }
    c.isState = wlan_interface_state_connected;
    Answers(&list, &c);
    EXPECT_EQ(6u, Query(OID_802_11_BSSID));
    answers_.connectionSize = WLAN_CONNECTION_SIZE - 1;   // a short record is none
    EXPECT_EQ(0u, Query(OID_802_11_BSSID));
}

} // namespace
