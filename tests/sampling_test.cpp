// sampling_test.cpp: the adapter choice, the counter reading, the tick's rings, the taskbar icon.
#include "tests/support.h"
#include "platform/fake/fake_wireless.h"
#include "trafficlog/trafficlog.h"

#include <ntddndis.h>

#include <vector>

namespace {

class Sampling : public DeviceTest {
protected:
    // An adapter on the fake device; returns its position in the list.
    size_t AddAdapter(const char *name, UINT type, DWORD index, DWORD in = 0, DWORD out = 0)
    {
        fake::g_device.adapters.push_back({name, L"", type, index, in, out});
        return fake::g_device.adapters.size() - 1;
    }
    void Counters(DWORD in, DWORD out, size_t adapter = 0)
    {
        fake::g_device.adapters[adapter].inOctets = in;
        fake::g_device.adapters[adapter].outOctets = out;
    }
    // This month's log as bytes; empty when there is no file.
    std::vector<BYTE> LogBytes()
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(fake::g_device.localTime.wYear, fake::g_device.localTime.wMonth, path);
        std::vector<BYTE> bytes;
        HANDLE f = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                               OPEN_EXISTING, 0, nullptr);
        if (f == INVALID_HANDLE_VALUE)
            return bytes;
        BYTE buffer[4096];
        DWORD got = 0;
        while (ReadFile(f, buffer, sizeof buffer, &got, nullptr) && got)
            bytes.insert(bytes.end(), buffer, buffer + got);
        CloseHandle(f);
        return bytes;
    }
    static DWORD Field(const std::vector<BYTE> &bytes, size_t offset)
    {
        DWORD v = 0;
        memcpy(&v, bytes.data() + offset, 4);
        return v;
    }
    COLORREF IconBackgroundPixel(int x, int y)
    {
        HDC memory = CreateCompatibleDC(fake::g_device.screenDC);
        HGDIOBJ old = SelectObject(memory, g_item.iconBackground);
        COLORREF c = GetPixel(memory, x, y);
        SelectObject(memory, old);
        DeleteDC(memory);
        return c;
    }
    static void FillScreen(int left, int top, int side, COLORREF colour)
    {
        HBRUSH brush = CreateSolidBrush(colour);
        RECT r = {left, top, left + side, top + side};
        FillRect(fake::g_device.screenDC, &r, brush);
        DeleteObject(brush);
    }
};

TEST_F(Sampling, FirstTickOnlyPrimesTheCounters)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 1000, 500);
    FillScreen(75, 5, 16, RGB(200, 0, 0));
    OnTick(nullptr);
    EXPECT_EQ(0, g_item.sampleCount);
    EXPECT_EQ(-1, g_item.ringIndex);
    EXPECT_EQ(1000u, g_item.lastInOctets);
    EXPECT_EQ(500u, g_item.lastOutOctets);
    EXPECT_TRUE(LogBytes().empty());
    EXPECT_EQ(nullptr, g_item.iconBackground);
    EXPECT_EQ(4u, g_item.interfaceIndex);
    EXPECT_STREQ(L"{ETH}", g_item.adapterName);
}

TEST_F(Sampling, IncrementsWrapButNeverGoNegative)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    struct {
        DWORD last, now, increment;
    } cases[] = {
        {0xFFFFFFF0, 0x10, 0x20},          // wrapped past the top
        {1000, 900, 0},                    // fell back
        {0, 0x7FFFFFFF, 0x7FFFFFFF},       // the largest step that counts
        {0, 0x80000000, 0},                // a jump of 2^31 reads as a fall
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

TEST_F(Sampling, TheLogGetsReceivedAndTransmittedInTheirPlaces)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 1000, 0xFFFFFFF0);
    OnTick(nullptr);
    Counters(900, 0x10);   // received fell back, transmitted wrapped
    OnTick(nullptr);
    std::vector<BYTE> log = LogBytes();
    ASSERT_EQ(12u, log.size());
    EXPECT_EQ(15, log[0]);
    EXPECT_EQ(10, log[1]);
    EXPECT_EQ(0u, Field(log, 4));      // received
    EXPECT_EQ(0x20u, Field(log, 8));   // transmitted
}

TEST_F(Sampling, RingsFillThenTurnOverOneSlotAtATime)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    OnTick(nullptr);
    struct {
        DWORD tick;
        int count, index, start;
    } checks[] = {{1, 1, 0, 0}, {2, 2, 1, 0}, {20, 20, 19, 0}, {21, 20, 0, 1}, {40, 20, 19, 0}, {41, 20, 0, 1}};
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
        if (k == 21) {
            EXPECT_EQ(2u, g_item.outDeltas[1]);   // the rest stays
        }
        next++;
    }
}

TEST_F(Sampling, TaskbarIconIdByTrafficAndSignalBand)
{
    const int dbm[] = {-200, -90, -89, -81, -80, -71, -70, -67, -66, 0};
    const int band[] = {0, 0, 1, 1, 2, 2, 3, 3, 4, 4};
    struct {
        DWORD out, in;
        int normal[5], hiRes[5];
    } rows[] = {
        {1, 1, {233, 234, 235, 236, 237}, {212, 213, 214, 216, 217}},
        {1, 0, {248, 249, 250, 251, 252}, {228, 229, 230, 231, 232}},
        {0, 1, {243, 244, 245, 246, 247}, {223, 224, 225, 226, 227}},
        {0, 0, {238, 239, 240, 241, 242}, {218, 219, 220, 221, 222}},
    };
    g_item.ringIndex = 7;
    for (auto &row : rows) {
        g_item.outDeltas[7] = row.out;
        g_item.inDeltas[7] = row.in;
        for (size_t i = 0; i < sizeof dbm / sizeof dbm[0]; i++) {
            g_item.signalDbm = dbm[i];
            g_item.screenWidth = 240;
            g_item.screenHeight = 320;
            EXPECT_EQ(row.normal[band[i]], TaskbarIconId()) << dbm[i];
            g_item.screenWidth = 480;
            g_item.screenHeight = 640;
            EXPECT_EQ(row.hiRes[band[i]], TaskbarIconId()) << dbm[i];
            EXPECT_NE(215, TaskbarIconId());
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

    // The interface table must name it exactly; case and prefixes count.
    const wchar_t *lookalikes[] = {L"{eth1}", L"\\DEVICE\\TCPIP_{ETH1}", L"{ETH1} "};
    for (const wchar_t *name : lookalikes) {
        fake::g_device.adapters[1].interfaceName = name;
        g_item.interfaceIndex = UNKNOWN_INTERFACE;
        EXPECT_TRUE(ChooseAdapter());
        EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex) << name;
    }
}

TEST_F(Sampling, AnOverlongAdapterNameIsCutNotOverrun)
{
    std::string name(250, 'x');
    AddAdapter(name.c_str(), MIB_IF_TYPE_ETHERNET, 8);
    g_item.interfaceIndex = 0x55555555;   // the field after the name
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
    DWORD out = 1, in = 1;
    EXPECT_TRUE(ReadInterfaceCounters(&out, &in));
    EXPECT_EQ(0u, out);
    EXPECT_EQ(0u, in);
    EXPECT_EQ(2, g_item.sampleCount);
    EXPECT_EQ(0u, g_item.outDeltas[1]);
    EXPECT_TRUE(LogBytes().empty());
}

TEST_F(Sampling, UnreadableCountersChooseTheAdapterAgain)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4, 100, 50);
    OnTick(nullptr);

    // One failure: chosen again and read again.
    fake::FailCall(fake::kGetIfEntry, 1);
    Counters(300, 150);
    OnTick(nullptr);
    EXPECT_EQ(200u, g_item.inDeltas[g_item.ringIndex]);
    EXPECT_EQ(100u, g_item.outDeltas[g_item.ringIndex]);

    // Both readings fail: 0 and 0, which is a fall, and nothing is logged.
    fake::FailCall(fake::kGetIfEntry, 1, true);
    Counters(400, 200);
    OnTick(nullptr);
    EXPECT_EQ(0u, g_item.inDeltas[g_item.ringIndex]);
    EXPECT_EQ(0u, g_item.lastInOctets);
    fake::FailCall(fake::kGetIfEntry, 0);

    // The next real reading counts from 0.
    OnTick(nullptr);
    EXPECT_EQ(400u, g_item.inDeltas[g_item.ringIndex]);

    // An adapter that came back under a new index is found there.
    fake::g_device.adapters[0].index = 9;
    Counters(450, 210);
    OnTick(nullptr);
    EXPECT_EQ(9u, g_item.interfaceIndex);
    EXPECT_EQ(50u, g_item.inDeltas[g_item.ringIndex]);

    std::vector<BYTE> log = LogBytes();
    ASSERT_EQ(12u, log.size());
    EXPECT_EQ(200u + 400 + 50, Field(log, 4));
    EXPECT_EQ(100u + 200 + 10, Field(log, 8));
}

TEST_F(Sampling, TimerElevenTicksAndOthersDoNot)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    HWND item = CreateItem();
    ASSERT_NE(nullptr, item);
    SendMessageW(item, WM_TIMER, 12, 0);
    EXPECT_EQ(-1, g_item.sampleCount);
    SendMessageW(item, WM_TIMER, SAMPLE_TIMER_ID, 0);
    EXPECT_EQ(0, g_item.sampleCount);
}

TEST_F(Sampling, TheTickReadsTheSignalFirst)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    fake::SetWirelessAdapter(L"WLAN1");
    fake::SetOidDword(OID_802_11_RSSI, (DWORD)-75);
    const BYTE bssid[6] = {0, 1, 2, 3, 4, 5};
    fake::SetOidAnswer(OID_802_11_BSSID, bssid, sizeof bssid);
    OnTick(nullptr);   // even the priming tick asks
    EXPECT_EQ(-75, g_item.signalDbm);
    EXPECT_EQ(-75, g_item.signalHistory[SIGNAL_HISTORY_SIZE - 1]);
    EXPECT_EQ(1, fake::g_wireless.opens);
}

TEST_F(Sampling, IconSnapshotIsTakenThenRetakenWhenTheScreenChanges)
{
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    FillScreen(75, 5, 16, RGB(200, 0, 0));
    OnTick(nullptr);
    OnTick(nullptr);
    ASSERT_NE(nullptr, g_item.iconBackground);
    BITMAP bm;
    ASSERT_TRUE(GetObjectW(g_item.iconBackground, sizeof bm, &bm));
    EXPECT_EQ(16, bm.bmWidth);
    EXPECT_EQ(RGB(200, 0, 0), IconBackgroundPixel(0, 0));
    EXPECT_EQ(RGB(200, 0, 0), IconBackgroundPixel(15, 15));
    EXPECT_EQ(0, fake::g_device.screenDCsOut);

    // Something else paints there (the last pixel compared): taken again.
    SetPixel(fake::g_device.screenDC, 75 + 15, 5 + 15, RGB(0, 0, 200));
    OnTick(nullptr);
    EXPECT_EQ(RGB(0, 0, 200), IconBackgroundPixel(15, 15));
    EXPECT_EQ(0, fake::g_device.screenDCsOut);
}

TEST_F(Sampling, HiResIconSnapshotIsTwiceTheSizeAndLower)
{
    fake::SetScreen(480, 640);
    Attach();
    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    FillScreen(75, 10, 32, RGB(0, 150, 0));
    OnTick(nullptr);
    OnTick(nullptr);
    ASSERT_NE(nullptr, g_item.iconBackground);
    BITMAP bm;
    ASSERT_TRUE(GetObjectW(g_item.iconBackground, sizeof bm, &bm));
    EXPECT_EQ(32, bm.bmWidth);
    EXPECT_EQ(RGB(0, 150, 0), IconBackgroundPixel(0, 0));
    EXPECT_EQ(RGB(0, 150, 0), IconBackgroundPixel(31, 31));
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
    EXPECT_EQ(RGB(255, 255, 255), fake::ScreenPixel(80, 10));
    EXPECT_EQ(12u, LogBytes().size());

    g_item.showTaskbarIcon = true;
    fake::FailCall(fake::kGetDC, 1, true);
    Counters(20, 20);
    OnTick(nullptr);
    EXPECT_EQ(nullptr, g_item.iconBackground);
    EXPECT_EQ(20u, Field(LogBytes(), 4));
}

TEST_F(Sampling, TheIconIsPaintedOverTheSnapshot)
{
    HICON probe = static_cast<HICON>(
        LoadImageW(g_item.instance, MAKEINTRESOURCEW(238), IMAGE_ICON, 0, 0, 0));
    if (!probe)
        GTEST_SKIP() << "no taskbar icons in this build";
    DestroyIcon(probe);

    AddAdapter("{ETH}", MIB_IF_TYPE_ETHERNET, 4);
    g_item.signalDbm = -50;
    OnTick(nullptr);
    OnTick(nullptr);   // idle: no traffic
    int changed = 0;
    for (int y = 5; y < 21; y++)
        for (int x = 75; x < 91; x++)
            changed += fake::ScreenPixel(x, y) != RGB(255, 255, 255);
    EXPECT_GT(changed, 0);
    EXPECT_EQ(RGB(255, 255, 255), fake::ScreenPixel(74, 5));    // and nowhere else
    EXPECT_EQ(RGB(255, 255, 255), fake::ScreenPixel(91, 21));
    // The snapshot is what was under the icon, not the icon.
    EXPECT_EQ(RGB(255, 255, 255), IconBackgroundPixel(8, 8));
}

} // namespace
