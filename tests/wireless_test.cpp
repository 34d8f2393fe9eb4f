// wireless_test.cpp: the signal query, the adapter's presence, channels, and the driver answers' decoders.
#include "tests/support.h"
#include "platform/fake/fake_wireless.h"
#include "wireless/bssidlist.h"
#include "wireless/wireless.h"

#include <vector>

namespace {

typedef std::vector<BYTE> Bytes;

class Wireless : public DeviceTest {
protected:
    void Adapter()
    {
        const BYTE bssid[6] = {0x00, 0x0F, 0x66, 0x12, 0x34, 0x56};
        fake::SetWirelessAdapter(L"TIACXWLN1");
        fake::SetOidDword(OID_802_11_RSSI, (DWORD)-63);
        fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
    }
};

TEST_F(Wireless, SignalLevelAndHistoryByWhatTheDriverAnswers)
{
    const struct {
        const char *what;
        bool present, bound, bindingFails, level, associated;
        int result, dbm, newest;   // the newest history entry
        size_t queries;
    } cases[] = {
        {"no driver", false, false, false, false, false, 0, NO_SIGNAL, NO_SIGNAL, 0},
        {"no adapter bound", true, false, false, true, true, 0, NO_SIGNAL, NO_SIGNAL, 0},
        {"binding query fails", true, true, true, true, true, 0, NO_SIGNAL, NO_SIGNAL, 0},
        {"level query fails", true, true, false, false, true, 1, NO_SIGNAL, NO_SIGNAL, 2},
        // Not associated: the strip shows no signal, the history keeps the level.
        {"not associated", true, true, false, true, false, 1, NO_SIGNAL, -63, 2},
        {"associated", true, true, false, true, true, 1, -63, -63, 2},
    };
    for (auto &c : cases) {
        fake::ResetWireless();
        Adapter();
        fake::g_wireless.present = c.present;
        if (!c.bound)
            fake::g_wireless.bindingName.clear();
        fake::g_wireless.bindingFails = c.bindingFails;
        if (!c.level)
            fake::RemoveOidAnswer(OID_802_11_RSSI);
        if (!c.associated)
            fake::RemoveOidAnswer(OID_802_11_BSSID);
        for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
            g_item.signalHistory[i] = i;
        g_item.signalDbm = -50;

        EXPECT_EQ(c.result, QuerySignal()) << c.what;
        EXPECT_EQ(c.dbm, g_item.signalDbm) << c.what;
        for (int i = 0; i < SIGNAL_HISTORY_SIZE - 1; i++)
            EXPECT_EQ(i + 1, g_item.signalHistory[i]) << c.what << ", entry " << i;
        EXPECT_EQ(c.newest, g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1]) << c.what;
        EXPECT_EQ(c.queries, fake::g_wireless.queries.size()) << c.what;
        EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes) << c.what;
    }
    EXPECT_EQ((std::vector<NDIS_OID>{OID_802_11_RSSI, OID_802_11_BSSID}), fake::g_wireless.queries);
    EXPECT_EQ(1, fake::g_wireless.opens);
}

TEST_F(Wireless, PresenceIsTimedFromWhenTheAdapterCame)
{
    Adapter();
    auto queryAt = [](DWORD tick, bool present) {
        fake::g_device.tickCount = tick;
        fake::g_wireless.present = present;
        QuerySignal();
    };
    queryAt(1000, true);
    EXPECT_TRUE(g_item.signalTiming);
    queryAt(3000, true);
    EXPECT_EQ(1000u, WirelessSinceTick);
    queryAt(5000, false);
    EXPECT_FALSE(g_item.signalTiming);
    EXPECT_EQ(1000u - 5000u, WirelessLostValue);   // wraps, as kept
    queryAt(7000, true);
    EXPECT_EQ(7000u, WirelessSinceTick);
}

TEST_F(Wireless, ChannelsByKilohertzOrHundredsOfKilohertz)
{
    const struct { DWORD frequency; int channel; } cases[] = {
        {2437000, 6}, {24370, 6}, {2412000, 1}, {24120, 1}, {2472000, 13}, {2477000, 14}, {24770, 14},
        {2484000, NO_CHANNEL}, {24840, NO_CHANNEL}, {2437001, NO_CHANNEL}, {2436999, NO_CHANNEL},
        {2407000, NO_CHANNEL}, {0, NO_CHANNEL}, {243700, NO_CHANNEL}, {0xFFFFFFFF, NO_CHANNEL}};
    for (auto c : cases)
        EXPECT_EQ(c.channel, ChannelFromFrequency(c.frequency)) << c.frequency;
}

// Bytes placed right before an unreadable page (all test buffers fit in one):
// a decoder that reads one byte past them faults.
struct GuardedBytes {
    BYTE *pages = static_cast<BYTE *>(VirtualAlloc(nullptr, 8192, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    BYTE *data;
    explicit GuardedBytes(const Bytes &bytes) : data(pages + 4096 - bytes.size())
    {
        DWORD old;
        VirtualProtect(pages + 4096, 4096, PAGE_NOACCESS, &old);
        if (!bytes.empty())
            memcpy(data, bytes.data(), bytes.size());
    }
    ~GuardedBytes() { VirtualFree(pages, 0, MEM_RELEASE); }
};

Bytes Put(Bytes b, size_t at, DWORD v)
{
    memcpy(&b[at], &v, 4);
    return b;
}

// One access point entry of `length` bytes (at least the fixed part).
Bytes Entry(DWORD length, const char *ssid, int rssi, DWORD frequency, BYTE last = 1)
{
    Bytes e(length, 0);
    const struct { size_t at; DWORD value; } fields[] = {
        {0, length}, {12, (DWORD)strlen(ssid)}, {48, 1}, {52, (DWORD)rssi}, {56, 3},
        {64, 100}, {68, 2}, {72, frequency}, {92, 1}};
    for (auto f : fields)
        memcpy(&e[f.at], &f.value, 4);
    const BYTE mac[6] = {0x00, 0x11, 0x22, 0x33, 0x44, last}, rates[8] = {2, 4, 11, 22, 0};
    memcpy(&e[4], mac, 6);
    memcpy(&e[16], ssid, strlen(ssid));
    memcpy(&e[96], rates, 8);
    return e;
}

Bytes List(DWORD count, std::initializer_list<Bytes> entries)
{
    Bytes b = Put(Bytes(4), 0, count);
    for (auto &e : entries)
        b.insert(b.end(), e.begin(), e.end());
    return b;
}

int Decode(const Bytes &bytes, BssidEntry *out, int max = 8)
{
    GuardedBytes guarded(bytes);
    return DecodeBssidList(guarded.data, (DWORD)bytes.size(), out, max);
}

TEST(BssidList, DecodesEveryFieldOfEntriesAtOddLengths)
{
    // The second entry carries information elements and is odd: the third starts unaligned.
    Bytes bytes = List(3, {Entry(104, "home", -48, 2437000, 1), Entry(131, "office-net", -85, 24120, 2),
                           Entry(104, "cafe", -70, 2462000, 3)});
    BssidEntry e[8] = {};
    ASSERT_EQ(3, Decode(bytes, e));
    EXPECT_EQ(0x11, e[0].mac[1]);
    EXPECT_EQ(1, e[0].mac[5]);
    EXPECT_EQ(4u, e[0].ssidLength);
    EXPECT_EQ(0, memcmp(e[0].ssid, "home", 4));
    EXPECT_EQ(-48, e[0].rssi);
    EXPECT_EQ(1u, e[0].privacy);
    EXPECT_EQ(3u, e[0].networkType);
    EXPECT_EQ(100u, e[0].beaconPeriod);
    EXPECT_EQ(2u, e[0].atimWindow);
    EXPECT_EQ(2437000u, e[0].dsConfig);
    EXPECT_EQ(1u, e[0].infrastructureMode);
    EXPECT_EQ(22, e[0].rates[3]);
    EXPECT_EQ(0, memcmp(e[1].ssid, "office-net", 10));
    EXPECT_EQ(-85, e[1].rssi);
    EXPECT_EQ(3, e[2].mac[5]);
    EXPECT_EQ(2462000u, e[2].dsConfig);
}

TEST(BssidList, SurvivesWhatItsLengthsSay)
{
    const Bytes good = Entry(104, "a", -60, 2412000);
    Bytes tiny = List(0xFFFFFFFF, {});
    for (int i = 0; i < 50; i++)
        tiny.insert(tiny.end(), {4, 0, 0, 0});
    tiny.insert(tiny.end(), {1, 0});
    const struct {
        const char *what;
        Bytes bytes;
        int max, decoded;
    } cases[] = {
        {"a count beyond the entries", List(50, {good}), 8, 1},
        {"a length of 0 gives no step", List(3, {good, Put(good, 0, 0), good}), 8, 1},
        {"a length past the end", List(2, {good, Put(good, 0, 105)}), 8, 1},
        {"a length of 2^32-1", List(1, {Put(good, 0, 0xFFFFFFFF)}), 8, 0},
        {"too short for its fields: stepped over", List(3, {good, Put(Bytes(20), 0, 20), good}), 8, 2},
        {"fewer bytes than a count", {1, 0}, 8, 0},
        {"a count of 0", List(0, {good}), 8, 0},
        {"room for fewer entries", List(2, {good, good}), 1, 1},
        {"tiny steps under a count without end", tiny, 8, 0},
    };
    for (auto &c : cases) {
        BssidEntry e[8] = {};
        EXPECT_EQ(c.decoded, Decode(c.bytes, e, c.max)) << c.what;
    }
    BssidEntry e[1];
    ASSERT_EQ(1, Decode(List(1, {Put(good, 12, 200)}), e, 1));   // an SSID longer than its field
    EXPECT_EQ((DWORD)BSSID_SSID_BYTES, e[0].ssidLength);
}

TEST(BssidList, NeverReadsPastItsBuffer)
{
    // Random lengths and counts over the guard page; any read past the end faults.
    DWORD seed = 12345;
    auto next = [&seed]() {
        seed = seed * 1103515245 + 12345;
        return seed >> 8;
    };
    BssidEntry e[16];
    for (int round = 0; round < 2000; round++) {
        Bytes bytes(next() % 1017);
        for (BYTE &b : bytes)
            b = (BYTE)next();
        for (size_t at = 0; at + 4 <= bytes.size(); at += 1 + next() % 120)
            bytes = Put(bytes, at, next() % 4 == 0 ? next() : next() % 160);
        int n = Decode(bytes, e, 16);
        ASSERT_LE(n, 16);
        for (int i = 0; i < n; i++)
            ASSERT_LE(e[i].ssidLength, (DWORD)BSSID_SSID_BYTES);
    }
}

TEST(BindingName, StaysInsideTheAnswerAndTheCallersRoom)
{
    auto name = [](const Bytes &answer, int chars = WIRELESS_NAME_CHARS) {
        GuardedBytes guarded(answer);
        WCHAR out[WIRELESS_NAME_CHARS + 1];
        BindingNameFromRecord(guarded.data, (DWORD)answer.size(), out, chars);
        return std::wstring(out);
    };
    // A record pointing at `length` bytes at `offset`, the text there as far as it fits.
    auto answer = [](DWORD offset, DWORD length, const wchar_t *text, size_t size) {
        Bytes b = Put(Put(Bytes(size), 4, offset), 8, length);
        size_t bytes = wcslen(text) * 2;
        if (offset < size)
            memcpy(&b[offset], text, bytes < size - offset ? bytes : size - offset);
        return b;
    };
    EXPECT_EQ(L"WLAN1", name(answer(20, 12, L"WLAN1", 64)));
    EXPECT_EQ(L"WLAN1", name(answer(20, 10, L"WLAN1", 30)));    // ends at the buffer's end
    EXPECT_EQ(L"WLA", name(answer(20, 1000, L"WLAN1", 26)));    // cut where the answer ends
    EXPECT_EQ(L"WLAN", name(answer(20, 12, L"WLAN1", 28)));     // even when shorter than the answer
    EXPECT_EQ(L"WL", name(answer(20, 5, L"WLAN1", 64)));        // half a character is dropped
    EXPECT_EQ(L"", name(answer(64, 12, L"WLAN1", 64)));         // points past the end
    EXPECT_EQ(L"", name(answer(0xFFFFFFF0, 0x20, L"", 64)));
    EXPECT_EQ(L"", name(Bytes(12)));                            // shorter than the record
    EXPECT_EQ(L"WLA", name(answer(20, 12, L"WLAN1", 64), 4));   // the caller's room
}

} // namespace
