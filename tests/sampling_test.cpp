// sampling_test.cpp: the adapter choice, the counter reading, the tick's rings, the taskbar icon.
#include "tests/support.h"
#include "tests/logfile.h"
#include "platform/fake/fake_wireless.h"

#include <ntddndis.h>

namespace {

class Sampling : public DeviceTest {
protected:
    void AddAdapter(const char *name, UINT type, DWORD index, DWORD in = 0, DWORD out = 0)
    {
        fake::g_device.adapters.push_back({name, L"", type, index, in, out});
    }
    // The first adapter's counters now, and a tick that reads them.
    void Tick(DWORD in, DWORD out)
    {
        fake::g_device.adapters[0].inOctets = in;
        fake::g_device.adapters[0].outOctets = out;
        OnTick(nullptr);
    }
    Bytes LogBytes() { return FileBytes(LogPath(2026, 1)); }
};

TEST_F(Sampling, FirstTickOnlyPrimesThenTheRingsFillAndTurnOverWithIncrementsThatNeverGoNegative)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 1000, 0xFFFFFFF0);
    OnTick(nullptr);
    EXPECT_TRUE(g_item.sampleCount == 0 && g_item.ringIndex == -1 && LogBytes().empty());
    Tick(900, 0x10);   // received fell back, transmitted wrapped
    EXPECT_EQ(Record(15, 10, 0, 0x20), LogBytes());
    // The largest step that counts; a jump of 2^31 reads as a fall.
    const DWORD steps[][3] = {{0, 0x7FFFFFFF, 0x7FFFFFFF}, {0, 0x80000000, 0}, {5, 5, 0}};
    for (auto c : steps) {
        Tick(0, c[0]);
        Tick(0, c[1]);
        EXPECT_EQ(c[2], g_item.outDeltas[g_item.ringIndex]) << c[0] << " -> " << c[1];
    }
    // From a fresh start: {tick, count, newest, oldest}; the k-th increment is k.
    Attach();
    const int checks[][4] = {{1, 1, 0, 0}, {2, 2, 1, 0}, {20, 20, 19, 0}, {21, 20, 0, 1}, {40, 20, 19, 0}, {41, 20, 0, 1}};
    Tick(0, 0);
    for (DWORD k = 1, next = 0, out = 0; k <= 41; k++) {
        out += k;
        Tick(2 * out, out);
        if (next < 6 && (DWORD)checks[next][0] == k) {
            const int *c = checks[next++];
            EXPECT_TRUE(g_item.sampleCount == c[1] && g_item.ringIndex == c[2] && g_item.ringStart == c[3] &&
                        g_item.outDeltas[c[2]] == k && g_item.inDeltas[c[2]] == 2 * k) << k;
        }
    }
    EXPECT_EQ(22u, g_item.outDeltas[1]);   // the 41st took slot 0 only
}

TEST_F(Sampling, TaskbarIconIdByTrafficAndSignalBand)
{
    // Rows: both directions, sending, receiving, idle; the hi-res row for both skips 215.
    const int first[2][4] = {{233, 248, 243, 238}, {212, 228, 223, 218}};
    g_item.ringIndex = 7;
    for (int row = 0; row < 4; row++)
        for (int s = 1; s <= 2; s++)
            for (int dbm : {-90, -70, -66}) {
                g_item.outDeltas[7] = row < 2;
                g_item.inDeltas[7] = row % 2 == 0;
                g_item.screenWidth = 240 * s;
                g_item.signalDbm = dbm;
                int band = SignalBand(dbm), want = first[s - 1][row] + band + (s == 2 && row == 0 && band >= 3);
                EXPECT_EQ(want, TaskbarIconId()) << row << " " << dbm << " dBm, x" << s;
            }
}

TEST_F(Sampling, FirstEthernetAdapterIsChosenByExactName)
{
    AddAdapter("{WLAN}", 71, 2);
    AddAdapter("{ETH1}", MIB_IF_TYPE_ETHERNET, 5);
    AddAdapter("{ETH2}", MIB_IF_TYPE_ETHERNET, 6);
    EXPECT_TRUE(ChooseAdapter() && !lstrcmpW(L"{ETH1}", g_item.adapterName) && g_item.interfaceIndex == 5);
    for (const wchar_t *name : {L"{eth1}", L"\\DEVICE\\TCPIP_{ETH1}", L"{ETH1} "}) {
        fake::g_device.adapters[1].interfaceName = name;
        g_item.interfaceIndex = UNKNOWN_INTERFACE;
        EXPECT_TRUE(ChooseAdapter() && g_item.interfaceIndex == UNKNOWN_INTERFACE) << name;
    }
    // A name longer than the item's field is cut, not written over what follows.
    fake::g_device.adapters.clear();
    AddAdapter(std::string(250, 'x').c_str(), MIB_IF_TYPE_ETHERNET, 8);
    g_item.interfaceIndex = 0x55555555;
    fake::FailCall(fake::kGetInterfaceInfo, 1);
    EXPECT_TRUE(ChooseAdapter() && lstrlenW(g_item.adapterName) == 127 && g_item.interfaceIndex == 0x55555555);

    // No adapter at all, then no Ethernet one.
    fake::g_device.adapters.clear();
    EXPECT_FALSE(ChooseAdapter());
    AddAdapter("{WLAN}", 71, 2, 5000, 5000);
    AddAdapter("{LOOP}", MIB_IF_TYPE_LOOPBACK, 1, 7000, 7000);
    EXPECT_FALSE(ChooseAdapter());
    EXPECT_TRUE(g_item.interfaceIndex == UNKNOWN_INTERFACE && !g_item.adapterName[0]);
}

TEST_F(Sampling, UnreadableCountersChooseTheAdapterAgain)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 100, 50);
    OnTick(nullptr);
    fake::FailCall(fake::kGetIfEntry, 1);   // one failure: chosen again, read again
    Tick(300, 150);
    EXPECT_TRUE(g_item.inDeltas[g_item.ringIndex] == 200 && g_item.outDeltas[g_item.ringIndex] == 100);
    fake::FailCall(fake::kGetIfEntry, 1, true);   // both fail: 0 and 0, a fall
    Tick(400, 200);
    EXPECT_EQ(0u, g_item.inDeltas[g_item.ringIndex]);
    fake::FailCall(fake::kGetIfEntry, 0);
    OnTick(nullptr);   // so the next real reading counts from 0
    EXPECT_EQ(400u, g_item.inDeltas[g_item.ringIndex]);
    fake::g_device.adapters[0].index = 9;   // came back under a new index
    Tick(450, 210);
    EXPECT_TRUE(g_item.interfaceIndex == 9 && g_item.inDeltas[g_item.ringIndex] == 50);
    EXPECT_EQ(Record(15, 10, 200 + 400 + 50, 100 + 200 + 10), LogBytes());
}

TEST_F(Sampling, EveryTickReplacesTheTaskbarIconExactly)
{
    // The kept snapshot puts the previous icon back before each new one: drawn
    // over it, the halo darkened tick by tick and the no-signal cross stayed
    // over the bars of a better band.
    const COLORREF bar = RGB(16, 52, 120);
    const BYTE bssid[6] = {0, 1, 2, 3, 4, 5};
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    for (int s : {1, 2}) {
        fake::SetScreen(240 * s, 320 * s);
        Fill(fake::g_device.screenDC, 0, 0, 240 * s, 26 * s, bar);
        Attach();                                            // captures the clean taskbar
        fake::SetWirelessAdapter(L"WLAN1");
        fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
        for (int dbm : {-200, -60, -95}) {
            fake::SetOidDword(OID_802_11_RSSI, (DWORD)dbm);
            for (int tick = 0; tick < 12; tick++)
                OnTick(nullptr);
            EXPECT_EQ(IconOver(bar, TaskbarIconId(), 16 * s), Pixels(fake::g_device.screenDC, 75, 5 * s, 16 * s, 16 * s))
                << dbm << " dBm, x" << s;
        }
    }
}

} // namespace
