// wireless_test.cpp: the signal query, the adapter's presence, channels, and the driver answers' decoders.
#include "tests/support.h"
#include "platform/fake/fake_wireless.h"
#include "wireless/bssidlist.h"
#include "wireless/wireless.h"

#include <vector>

namespace {

const BYTE kBssid[6] = {0x00, 0x0F, 0x66, 0x12, 0x34, 0x56};

class Wireless : public DeviceTest {
protected:
    void Adapter(int rssi, bool associated = true)
    {
        fake::SetWirelessAdapter(L"TIACXWLN1");
        fake::SetOidDword(OID_802_11_RSSI, (DWORD)rssi);
        if (associated)
            fake::SetOidAnswer(OID_802_11_BSSID, kBssid, sizeof kBssid);
    }
    void FillHistory()
    {
        for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
            g_item.signalHistory[i] = i;
    }
    // The history moved one place and took `newest`.
    void ExpectShiftedWith(int newest)
    {
        for (int i = 0; i < SIGNAL_HISTORY_SIZE - 1; i++)
            EXPECT_EQ(i + 1, g_item.signalHistory[i]) << i;
        EXPECT_EQ(newest, g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1]);
    }
};

TEST_F(Wireless, NoDriverMeansNoSignal)
{
    FillHistory();
    g_item.signalDbm = -50;
    EXPECT_EQ(0, QuerySignal());
    EXPECT_EQ(NO_SIGNAL, g_item.signalDbm);
    ExpectShiftedWith(NO_SIGNAL);
}

TEST_F(Wireless, AnAssociatedAdapterGivesItsLevel)
{
    Adapter(-63);
    FillHistory();
    EXPECT_EQ(1, QuerySignal());
    EXPECT_EQ(-63, g_item.signalDbm);
    ExpectShiftedWith(-63);
    std::vector<NDIS_OID> asked = {OID_802_11_RSSI, OID_802_11_BSSID};
    EXPECT_EQ(asked, fake::g_wireless.queries);
    EXPECT_EQ(1, fake::g_wireless.opens);
    EXPECT_EQ(1, fake::g_wireless.closes);
}

TEST_F(Wireless, AnUnassociatedAdapterShowsNoSignalButKeepsTheReading)
{
    Adapter(-70, false);
    FillHistory();
    EXPECT_EQ(1, QuerySignal());
    EXPECT_EQ(NO_SIGNAL, g_item.signalDbm);
    ExpectShiftedWith(-70);
}

TEST_F(Wireless, AFailedLevelQueryReadsAsNoSignal)
{
    Adapter(-60);
    fake::RemoveOidAnswer(OID_802_11_RSSI);
    FillHistory();
    EXPECT_EQ(1, QuerySignal());
    EXPECT_EQ(NO_SIGNAL, g_item.signalDbm);
    ExpectShiftedWith(NO_SIGNAL);
}

TEST_F(Wireless, ADriverWithoutABoundAdapterIsNoWireless)
{
    Adapter(-60);
    fake::g_wireless.bindingName.clear();
    FillHistory();
    EXPECT_EQ(0, QuerySignal());
    ExpectShiftedWith(NO_SIGNAL);

    fake::g_wireless.bindingName = L"TIACXWLN1";
    fake::g_wireless.bindingFails = true;
    EXPECT_EQ(0, QuerySignal());
    EXPECT_TRUE(fake::g_wireless.queries.empty());
    EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes);
}

TEST_F(Wireless, PresenceIsTimedFromWhenTheAdapterCame)
{
    fake::g_device.tickCount = 1000;
    Adapter(-60);
    QuerySignal();
    EXPECT_TRUE(g_item.signalTiming);
    EXPECT_EQ(1000u, WirelessSinceTick);

    fake::g_device.tickCount = 3000;
    QuerySignal();
    EXPECT_EQ(1000u, WirelessSinceTick);

    fake::g_device.tickCount = 5000;
    fake::g_wireless.present = false;
    QuerySignal();
    EXPECT_FALSE(g_item.signalTiming);
    EXPECT_EQ(1000u - 5000u, WirelessLostValue);   // wraps, as kept

    fake::g_device.tickCount = 7000;
    fake::g_wireless.present = true;
    QuerySignal();
    EXPECT_EQ(7000u, WirelessSinceTick);
}

TEST_F(Wireless, FortyTicksWithoutWirelessClearTheHistory)
{
    FillHistory();
    for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
        QuerySignal();
    for (int v : g_item.signalHistory)
        EXPECT_EQ(NO_SIGNAL, v);
}

TEST_F(Wireless, ChannelsByKilohertzOrHundredsOfKilohertz)
{
    EXPECT_EQ(6, ChannelFromFrequency(2437000));
    EXPECT_EQ(6, ChannelFromFrequency(24370));
    EXPECT_EQ(1, ChannelFromFrequency(2412000));
    EXPECT_EQ(1, ChannelFromFrequency(24120));
    EXPECT_EQ(13, ChannelFromFrequency(2472000));
    EXPECT_EQ(14, ChannelFromFrequency(2477000));
    EXPECT_EQ(14, ChannelFromFrequency(24770));
    const DWORD unknown[] = {2484000, 24840, 2437001, 2436999, 2407000, 0, 243700, 0xFFFFFFFF};
    for (DWORD f : unknown)
        EXPECT_EQ(NO_CHANNEL, ChannelFromFrequency(f)) << f;
}

// Bytes placed right before an unreadable page: a decoder that reads one
// byte past them faults.
class GuardedBytes {
public:
    explicit GuardedBytes(const std::vector<BYTE> &bytes)
    {
        size_t pages = (bytes.size() + 4095) / 4096 + 1;
        base_ = static_cast<BYTE *>(VirtualAlloc(nullptr, pages * 4096, MEM_RESERVE | MEM_COMMIT,
                                                 PAGE_READWRITE));
        DWORD old;
        VirtualProtect(base_ + (pages - 1) * 4096, 4096, PAGE_NOACCESS, &old);
        data_ = base_ + (pages - 1) * 4096 - bytes.size();
        if (!bytes.empty())
            memcpy(data_, bytes.data(), bytes.size());
    }
    ~GuardedBytes() { VirtualFree(base_, 0, MEM_RELEASE); }
    const BYTE *data() const { return data_; }

private:
    BYTE *base_, *data_;
};

void Put(std::vector<BYTE> &b, size_t at, DWORD v)
{
    memcpy(&b[at], &v, 4);
}

// One access point entry of `length` bytes (at least the fixed part).
std::vector<BYTE> Entry(DWORD length, const char *ssid, int rssi, DWORD frequency, BYTE last = 1)
{
    std::vector<BYTE> e(length, 0);
    Put(e, 0, length);
    const BYTE mac[6] = {0x00, 0x11, 0x22, 0x33, 0x44, last};
    memcpy(&e[4], mac, 6);
    Put(e, 12, (DWORD)strlen(ssid));
    memcpy(&e[16], ssid, strlen(ssid));
    Put(e, 48, 1);
    Put(e, 52, (DWORD)rssi);
    Put(e, 56, 3);
    Put(e, 64, 100);
    Put(e, 68, 2);
    Put(e, 72, frequency);
    Put(e, 92, 1);
    const BYTE rates[8] = {2, 4, 11, 22, 0};
    memcpy(&e[96], rates, 8);
    return e;
}

std::vector<BYTE> List(DWORD count, std::initializer_list<std::vector<BYTE>> entries)
{
    std::vector<BYTE> b(4);
    Put(b, 0, count);
    for (auto &e : entries)
        b.insert(b.end(), e.begin(), e.end());
    return b;
}

int Decode(const std::vector<BYTE> &bytes, BssidEntry *out, int max = 8)
{
    GuardedBytes guarded(bytes);
    return DecodeBssidList(guarded.data(), (DWORD)bytes.size(), out, max);
}

TEST_F(Wireless, AccessPointListDecodesEveryField)
{
    // The second entry is longer (information elements follow) and odd, so
    // the third starts unaligned.
    std::vector<BYTE> bytes = List(3, {Entry(104, "home", -48, 2437000, 1),
                                       Entry(131, "office-net", -85, 24120, 2),
                                       Entry(104, "cafe", -70, 2462000, 3)});
    BssidEntry e[8] = {};
    ASSERT_EQ(3, Decode(bytes, e));
    EXPECT_EQ(1, e[0].mac[5]);
    EXPECT_EQ(0x11, e[0].mac[1]);
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
    EXPECT_EQ(11, ChannelFromFrequency(e[2].dsConfig));
}

TEST_F(Wireless, AccessPointListSurvivesWhatItsLengthsSay)
{
    BssidEntry e[8] = {};
    std::vector<BYTE> good = Entry(104, "a", -60, 2412000);

    // A count larger than the entries: the rest of the buffer is not there.
    EXPECT_EQ(1, Decode(List(50, {good}), e));
    // A length of 0 gives no step.
    std::vector<BYTE> zero = good;
    Put(zero, 0, 0);
    EXPECT_EQ(1, Decode(List(3, {good, zero, good}), e));
    // A length past the end of the buffer.
    std::vector<BYTE> longer = good;
    Put(longer, 0, 105);
    EXPECT_EQ(1, Decode(List(2, {good, longer}), e));
    Put(longer, 0, 0xFFFFFFFF);
    EXPECT_EQ(0, Decode(List(1, {longer}), e));
    // Too short for its fields: stepped over, the next one still found.
    std::vector<BYTE> shorter(20, 0);
    Put(shorter, 0, 20);
    EXPECT_EQ(2, Decode(List(3, {good, shorter, good}), e));
    // An SSID longer than its field.
    std::vector<BYTE> named = good;
    Put(named, 12, 200);
    ASSERT_EQ(1, Decode(List(1, {named}), e));
    EXPECT_EQ((DWORD)BSSID_SSID_BYTES, e[0].ssidLength);
    // Fewer bytes than a count, a count of 0, and room for fewer entries.
    EXPECT_EQ(0, Decode(std::vector<BYTE>{1, 0}, e));
    EXPECT_EQ(0, Decode(List(0, {good}), e));
    EXPECT_EQ(1, Decode(List(2, {good, good}), e, 1));
    // Tiny steps under a count without end walk off the end, not past it.
    std::vector<BYTE> tiny = List(0xFFFFFFFF, {});
    for (int i = 0; i < 50; i++)
        tiny.insert(tiny.end(), {4, 0, 0, 0});
    tiny.insert(tiny.end(), {1, 0});
    EXPECT_EQ(0, Decode(tiny, e));
}

TEST_F(Wireless, AccessPointListNeverReadsPastItsBuffer)
{
    // Random lengths and counts over the guard page; any read past the end
    // would fault.
    DWORD seed = 12345;
    auto next = [&seed]() {
        seed = seed * 1103515245 + 12345;
        return seed >> 8;
    };
    BssidEntry e[16];
    for (int round = 0; round < 2000; round++) {
        std::vector<BYTE> bytes(next() % 1017);
        for (BYTE &b : bytes)
            b = (BYTE)next();
        for (size_t at = 0; at + 4 <= bytes.size(); at += 1 + next() % 120)
            Put(bytes, at, next() % 4 == 0 ? next() : next() % 160);
        int n = Decode(bytes, e, 16);
        ASSERT_LE(n, 16);
        for (int i = 0; i < n; i++)
            ASSERT_LE(e[i].ssidLength, (DWORD)BSSID_SSID_BYTES);
    }
}

TEST_F(Wireless, BindingNameStaysInsideTheAnswer)
{
    auto name = [](std::vector<BYTE> answer, int chars = WIRELESS_NAME_CHARS) {
        GuardedBytes guarded(answer);
        WCHAR out[WIRELESS_NAME_CHARS + 1];
        BindingNameFromRecord(guarded.data(), (DWORD)answer.size(), out, chars);
        return std::wstring(out);
    };
    auto answer = [](DWORD offset, DWORD length, const wchar_t *text, size_t size) {
        std::vector<BYTE> b(size, 0);
        Put(b, 4, offset);
        Put(b, 8, length);
        size_t bytes = wcslen(text) * 2;
        if (offset < size)
            memcpy(&b[offset], text, bytes < size - offset ? bytes : size - offset);
        return b;
    };
    EXPECT_EQ(L"WLAN1", name(answer(20, 12, L"WLAN1", 64)));
    EXPECT_EQ(L"WLAN1", name(answer(20, 10, L"WLAN1", 30)));    // ends at the buffer's end
    EXPECT_EQ(L"WLA", name(answer(20, 1000, L"WLAN1", 26)));    // cut where the answer ends
    EXPECT_EQ(L"WL", name(answer(20, 5, L"WLAN1", 64)));        // half a character is dropped
    EXPECT_EQ(L"", name(answer(64, 12, L"WLAN1", 64)));         // points past the end
    EXPECT_EQ(L"", name(answer(0xFFFFFFF0, 0x20, L"", 64)));
    EXPECT_EQ(L"", name(std::vector<BYTE>(12, 0)));             // shorter than the record
    EXPECT_EQ(L"WLA", name(answer(20, 12, L"WLAN1", 64), 4));   // the caller's room
}

} // namespace
