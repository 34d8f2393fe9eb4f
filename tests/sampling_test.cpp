// sampling_test.cpp: the adapter choice, the counter reading, the tick's rings, the taskbar icon.
#include "tests/support.h"
#include "tests/logfile.h"
#include "platform/fake/fake_wireless.h"

#include <ntddndis.h>

namespace {

const COLORREF kWhite = RGB(255, 255, 255);

class Sampling : public DeviceTest {
protected:
    void AddAdapter(const char *name, UINT type, DWORD index, DWORD in = 0, DWORD out = 0)
    {
        fake::g_device.adapters.push_back({name, L"", type, index, in, out});
    }
    void Counters(DWORD in, DWORD out)
    {
        fake::g_device.adapters[0].inOctets = in;
        fake::g_device.adapters[0].outOctets = out;
    }
    Bytes LogBytes() { return FileBytes(LogPath(2026, 1)); }
    COLORREF SnapshotPixel(int x, int y)
    {
        HDC memory = CreateCompatibleDC(fake::g_device.screenDC);
        HGDIOBJ old = SelectObject(memory, g_item.iconBackground);
        COLORREF c = GetPixel(memory, x, y);
        SelectObject(memory, old);
        DeleteDC(memory);
        return c;
    }
};

TEST_F(Sampling, FirstTickOnlyPrimesThenIncrementsWrapButNeverGoNegative)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 1000, 0xFFFFFFF0);
    OnTick(nullptr);
    EXPECT_EQ(0, g_item.sampleCount);
    EXPECT_EQ(-1, g_item.ringIndex);
    EXPECT_TRUE(LogBytes().empty());
    Counters(900, 0x10);   // received fell back, transmitted wrapped
    OnTick(nullptr);
    EXPECT_EQ(Record(15, 10, 0, 0x20), LogBytes());

    const struct { DWORD last, now, increment; } cases[] = {
        {0, 0x7FFFFFFF, 0x7FFFFFFF},   // the largest step that counts
        {0, 0x80000000, 0},            // a jump of 2^31 reads as a fall
        {5, 5, 0},
    };
    for (auto c : cases) {
        Counters(0, c.last);
        OnTick(nullptr);
        Counters(0, c.now);
        OnTick(nullptr);
        EXPECT_EQ(c.increment, g_item.outDeltas[g_item.ringIndex]) << c.last << " -> " << c.now;
    }
}

TEST_F(Sampling, RingsFillThenTurnOverOneSlotAtATime)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    OnTick(nullptr);
    const struct { DWORD tick; int count, index, start; } checks[] = {
        {1, 1, 0, 0}, {2, 2, 1, 0}, {20, 20, 19, 0}, {21, 20, 0, 1}, {40, 20, 19, 0}, {41, 20, 0, 1}};
    size_t next = 0;
    DWORD out = 0;
    for (DWORD k = 1; k <= 41; k++) {
        out += k;   // the k-th increment is k
        Counters(2 * out, out);
        OnTick(nullptr);
        if (checks[next].tick != k)
            continue;
        EXPECT_EQ(checks[next].count, g_item.sampleCount) << k;
        EXPECT_EQ(checks[next].index, g_item.ringIndex) << k;
        EXPECT_EQ(checks[next].start, g_item.ringStart) << k;
        EXPECT_EQ(k, g_item.outDeltas[g_item.ringIndex]) << k;
        EXPECT_EQ(2 * k, g_item.inDeltas[g_item.ringIndex]) << k;
        next++;
    }
    EXPECT_EQ(22u, g_item.outDeltas[1]);   // the 41st took slot 0 only
}

TEST_F(Sampling, TaskbarIconIdByTrafficAndSignalBand)
{
    // Band edges at -90/-89, -81/-80, -71/-70 and -67/-66; no reading (-200) is the lowest.
    const int dbm[] = {-200, -90, -89, -81, -80, -71, -70, -67, -66};
    const int band[] = {0, 0, 1, 1, 2, 2, 3, 3, 4};
    // Rows: both directions, sending, receiving, idle, at the lowest band; the hi-res row for both skips 215.
    const struct { DWORD out, in; int normal, hiRes; } rows[] = {
        {1, 1, 233, 212}, {1, 0, 248, 228}, {0, 1, 243, 223}, {0, 0, 238, 218}};
    g_item.ringIndex = 7;
    for (auto &row : rows) {
        g_item.outDeltas[7] = row.out;
        g_item.inDeltas[7] = row.in;
        for (size_t i = 0; i < sizeof dbm / sizeof dbm[0]; i++) {
            g_item.signalDbm = dbm[i];
            for (int s = 1; s <= 2; s++) {
                g_item.screenWidth = 240 * s;
                g_item.screenHeight = 320 * s;
                int first = s == 2 ? row.hiRes : row.normal;
                int skip = s == 2 && first == 212 && band[i] >= 3;
                EXPECT_EQ(first + band[i] + skip, TaskbarIconId()) << row.out << row.in << " " << dbm[i] << " dBm, x" << s;
            }
        }
    }
}

TEST_F(Sampling, FirstEthernetAdapterIsChosenByExactName)
{
    AddAdapter("{WLAN}", 71, 2);
    AddAdapter("{ETH1}", MIB_IF_TYPE_ETHERNET, 5);
    AddAdapter("{ETH2}", MIB_IF_TYPE_ETHERNET, 6);
    EXPECT_TRUE(ChooseAdapter());
    EXPECT_STREQ(L"{ETH1}", g_item.adapterName);
    EXPECT_EQ(5u, g_item.interfaceIndex);
    for (const wchar_t *name : {L"{eth1}", L"\\DEVICE\\TCPIP_{ETH1}", L"{ETH1} "}) {
        fake::g_device.adapters[1].interfaceName = name;
        g_item.interfaceIndex = UNKNOWN_INTERFACE;
        EXPECT_TRUE(ChooseAdapter());
        EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex) << name;
    }

    // A name longer than the item's field is cut, not written over what follows.
    fake::g_device.adapters.clear();
    AddAdapter(std::string(250, 'x').c_str(), MIB_IF_TYPE_ETHERNET, 8);
    g_item.interfaceIndex = 0x55555555;
    fake::FailCall(fake::kGetInterfaceInfo, 1);
    EXPECT_TRUE(ChooseAdapter());
    EXPECT_EQ(127, lstrlenW(g_item.adapterName));
    EXPECT_EQ(0x55555555u, g_item.interfaceIndex);
}

TEST_F(Sampling, WithoutAnEthernetAdapterEveryTickReadsNothing)
{
    EXPECT_FALSE(ChooseAdapter());   // no adapters at all
    AddAdapter("{WLAN}", 71, 2, 5000, 5000);
    AddAdapter("{LOOP}", MIB_IF_TYPE_LOOPBACK, 1, 7000, 7000);
    EXPECT_FALSE(ChooseAdapter());
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);
    EXPECT_STREQ(L"", g_item.adapterName);
    for (int i = 0; i < 3; i++)
        OnTick(nullptr);
    EXPECT_EQ(2, g_item.sampleCount);
    EXPECT_EQ(0u, g_item.outDeltas[1]);
    EXPECT_TRUE(LogBytes().empty());
}

TEST_F(Sampling, UnreadableCountersChooseTheAdapterAgain)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 100, 50);
    OnTick(nullptr);
    fake::FailCall(fake::kGetIfEntry, 1);   // one failure: chosen again, read again
    Counters(300, 150);
    OnTick(nullptr);
    EXPECT_EQ(200u, g_item.inDeltas[g_item.ringIndex]);
    EXPECT_EQ(100u, g_item.outDeltas[g_item.ringIndex]);

    fake::FailCall(fake::kGetIfEntry, 1, true);   // both fail: 0 and 0, a fall
    Counters(400, 200);
    OnTick(nullptr);
    EXPECT_EQ(0u, g_item.inDeltas[g_item.ringIndex]);
    fake::FailCall(fake::kGetIfEntry, 0);
    OnTick(nullptr);   // so the next real reading counts from 0
    EXPECT_EQ(400u, g_item.inDeltas[g_item.ringIndex]);

    fake::g_device.adapters[0].index = 9;   // came back under a new index
    Counters(450, 210);
    OnTick(nullptr);
    EXPECT_EQ(9u, g_item.interfaceIndex);
    EXPECT_EQ(50u, g_item.inDeltas[g_item.ringIndex]);
    EXPECT_EQ(Record(15, 10, 200 + 400 + 50, 100 + 200 + 10), LogBytes());
}

TEST_F(Sampling, TimerElevenTicksAndTheTickAsksForTheSignal)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    HWND item = CreateItem();
    ASSERT_NE(nullptr, item);
    SendMessageW(item, WM_TIMER, 12, 0);
    EXPECT_EQ(-1, g_item.sampleCount);
    fake::SetWirelessAdapter(L"WLAN1");
    fake::SetOidDword(OID_802_11_RSSI, (DWORD)-75);
    SendMessageW(item, WM_TIMER, SAMPLE_TIMER_ID, 0);
    EXPECT_EQ(0, g_item.sampleCount);
    EXPECT_EQ(-75, g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1]);   // even the priming tick asks
}

TEST_F(Sampling, IconIsPaintedOverItsSnapshotWhichIsRetakenWhenTheScreenChanges)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    const COLORREF red = RGB(200, 0, 0), blue = RGB(0, 0, 200);
    const struct { int width, height, top, side; } screens[] = {{240, 320, 5, 16}, {480, 640, 10, 32}};
    for (auto s : screens) {
        fake::SetScreen(s.width, s.height);
        Attach();
        HBRUSH brush = CreateSolidBrush(red);
        RECT r = {75, s.top, 75 + s.side, s.top + s.side};
        FillRect(fake::g_device.screenDC, &r, brush);
        OnTick(nullptr);
        EXPECT_EQ(nullptr, g_item.iconBackground) << s.width;   // the priming tick shows nothing
        OnTick(nullptr);
        ASSERT_NE(nullptr, g_item.iconBackground) << s.width;
        BITMAP bm;
        ASSERT_TRUE(GetObjectW(g_item.iconBackground, sizeof bm, &bm));
        EXPECT_EQ(s.side, bm.bmWidth);
        // The snapshot holds what was under the icon; the icon covers the square and nothing else.
        EXPECT_EQ(red, SnapshotPixel(s.side - 1, s.side - 1)) << s.width;
        EXPECT_EQ(kWhite, fake::ScreenPixel(r.left - 1, r.top)) << s.width;
        EXPECT_EQ(kWhite, fake::ScreenPixel(r.right, r.bottom)) << s.width;

        // Something else painted there, differing only in the last pixel compared: taken again.
        FillRect(fake::g_device.screenDC, &r, brush);
        SetPixel(fake::g_device.screenDC, r.right - 1, r.bottom - 1, blue);
        OnTick(nullptr);
        EXPECT_EQ(blue, SnapshotPixel(s.side - 1, s.side - 1)) << s.width;
        EXPECT_EQ(red, SnapshotPixel(s.side - 2, s.side - 1)) << s.width;
        EXPECT_EQ(0, fake::g_device.screenDCsOut);
        DeleteObject(brush);
    }
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
        HBRUSH brush = CreateSolidBrush(bar);
        RECT taskbar = {0, 0, 240 * s, 26 * s};
        FillRect(fake::g_device.screenDC, &taskbar, brush);
        DeleteObject(brush);
        Attach();                                            // captures the clean taskbar
        fake::SetWirelessAdapter(L"WLAN1");
        fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
        for (int dbm : {-200, -60, -95}) {
            fake::SetOidDword(OID_802_11_RSSI, (DWORD)dbm);
            for (int tick = 0; tick < 12; tick++)
                OnTick(nullptr);
            std::vector<COLORREF> shown;
            for (int y = 5 * s; y < 21 * s; y++)
                for (int x = 75; x < 75 + 16 * s; x++)
                    shown.push_back(fake::ScreenPixel(x, y));
            EXPECT_EQ(IconOver(bar, TaskbarIconId(), 16 * s), shown) << dbm << " dBm, x" << s;
        }
    }
}

TEST_F(Sampling, HiddenIconOrNoScreenSkipTheIconButNotTheLog)
{
    WriteSettingDword(L"TIcon", 0);
    Attach();
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    OnTick(nullptr);
    Counters(10, 10);
    OnTick(nullptr);
    EXPECT_EQ(nullptr, g_item.iconBackground);
    EXPECT_EQ(kWhite, fake::ScreenPixel(80, 10));
    EXPECT_EQ(Record(15, 10, 10, 10), LogBytes());

    g_item.showTaskbarIcon = true;
    fake::FailCall(fake::kGetDC, 1, true);
    Counters(20, 20);
    OnTick(nullptr);
    EXPECT_EQ(nullptr, g_item.iconBackground);
    EXPECT_EQ(Record(15, 10, 20, 20), LogBytes());
}

} // namespace
