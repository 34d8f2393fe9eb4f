// scan_test.cpp: the intruder scan on the fake network: own address, candidates, workers, and scans that overlap.
#include "diagnostics/diagnostics.h"
#include "diagnostics/scan.h"
#include "platform/fake/fake_lan.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <commctrl.h>
#include <string.h>

namespace {

const BYTE kOwnMac[6] = {0x02, 0x00, 0x5E, 0x10, 0x00, 0x21};

// A device on 198.51.100.33 (whatever the mask), threads held until the test runs them.
class Scan : public DeviceTest {
protected:
    void SetUp() override
    {
        g_scan.table = nullptr;   // the fake's memory of the last test is gone
        DeviceTest::SetUp();
        SetAddress("198.51.100.33");
        fake::g_lan.deferThreads = true;
    }
    void TearDown() override
    {
        DestroyWindow(dialog_);
        g_scan.table = nullptr;
        DeviceTest::TearDown();
    }
    void SetAddress(const char *ip, bool currentIsNull = false)
    {
        fake::g_device.adapters.clear();
        fake::g_lan.addresses.clear();
        fake::g_device.adapters.push_back({"loop", L"", MIB_IF_TYPE_LOOPBACK, 1, 0, 0});
        fake::g_device.adapters.push_back({"eth0", L"", MIB_IF_TYPE_ETHERNET, 2, 0, 0});
        fake::AdapterAddress loop = {"loop", "127.0.0.1", {9, 9, 9, 9, 9, 9}, 6, false};
        fake::AdapterAddress eth = {"eth0", ip, {}, 6, currentIsNull};
        memcpy(eth.mac, kOwnMac, 6);
        fake::g_lan.addresses.push_back(loop);
        fake::g_lan.addresses.push_back(eth);
    }
    HostRecord &Slot(int lastByte) { return g_scan.table->hosts[lastByte - 1]; }
    void Command(int id)
    {
        SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), (LPARAM)GetDlgItem(dialog_, id));
    }
    HWND dialog_ = nullptr;
};

TEST_F(Scan, OwnAddressFromTheFirstEthernetAdapter)
{
    char ip[16];
    BYTE mac[6];
    for (bool currentIsNull : {false, true}) {
        SetAddress("192.168.7.33", currentIsNull);
        GetCurrentAdapterAddress(ip, mac);
        EXPECT_STREQ("192.168.7.33", ip);
        EXPECT_EQ(0, memcmp(kOwnMac, mac, 6));
    }
    fake::g_device.adapters.resize(1);   // loopback only
    GetCurrentAdapterAddress(ip, mac);
    EXPECT_STREQ("", ip);
    EXPECT_EQ(0, memcmp("\0\0\0\0\0\0", mac, 6));
    fake::g_device.adapters.clear();
    GetCurrentAdapterAddress(ip, mac);
    EXPECT_STREQ("", ip);
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_FALSE(StartScan(nullptr));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Cannot get current IP address!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ(nullptr, g_scan.table);
}

TEST_F(Scan, CandidatesAreTheOwnSlash24AndEachWorkerProbesOnce)
{
    ASSERT_TRUE(StartScan(nullptr));
    EXPECT_EQ(254, fake::g_lan.threadsCreated);
    EXPECT_EQ(254, fake::g_lan.threadsSuspended);
    EXPECT_EQ(inet_addr("198.51.100.33"), g_scan.ownAddress);
    EXPECT_EQ(0, memcmp(kOwnMac, g_scan.ownMac, 6));
    EXPECT_EQ(254, fake::RunThreads());
    ASSERT_EQ(254u, fake::g_lan.echoes.size());
    for (int i = 0; i < 254; i++) {
        EXPECT_EQ(htonl(0xC6336401u + i), fake::g_lan.echoes[i].destination) << i;   // 198.51.100.1 + i
        EXPECT_TRUE(fake::g_lan.echoes[i].requestAsSent);
        EXPECT_EQ(5000u, fake::g_lan.echoes[i].timeout);
        EXPECT_EQ(-1, g_scan.table->hosts[i].status);
    }
    // Every worker let go of what it had: sockets, handles, Winsock, its record.
    EXPECT_EQ(0, fake::g_lan.icmpOpen);
    EXPECT_EQ(0, fake::g_lan.threadHandlesOpen);
    EXPECT_EQ(0, fake::g_lan.badHandleCloses);
    EXPECT_EQ(0, fake::g_lan.wsaBalance);
    EXPECT_EQ(1, fake::g_lan.liveBlocks);   // the table, the dialog's until it lets go
    ReleaseScanTable();
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_TRUE(fake::FreedBlocksUntouched());
}

TEST_F(Scan, WorkersRecordAddressMacAndName)
{
    fake::NetHost &named = fake::AddHost("198.51.100.7", true);
    fake::SetMac(named, 0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E);
    named.nodeStatus = fake::NodeStatusReply("SAMBA1", 1, 75);
    fake::SetMac(fake::AddHost("198.51.100.20", true), 1, 2, 3, 4, 5, 6);   // no NetBIOS
    fake::AddHost("198.51.100.100", true).nodeStatus = fake::NodeStatusReply("NOARP", 1, 90);
    fake::AddHost("198.51.100.200", true).nodeStatus = fake::NodeStatusReply("LIAR", 3, 100);
    fake::AddHost("198.51.100.201", true).replyFrom = inet_addr("198.51.100.1");
    fake::AddHost("198.51.100.202", false);
    fake::g_lan.arpGrowths = 3;   // the table grows under the first workers
    ASSERT_TRUE(StartScan(nullptr));
    fake::RunThreads();
    struct Want {
        int last;
        LONG status;
        const char *name;
        DWORD macKnown;
        BYTE mac0;
    } wants[] = {
        {7, 1, "SAMBA1", 1, 0x00}, {20, 1, "", 1, 0x01}, {100, 1, "NOARP", 0, 0},
        {200, 1, "", 0, 0},        {201, -1, "", 0, 0},  {202, -1, "", 0, 0}, {33, -1, "", 0, 0},
    };
    for (const Want &w : wants) {
        HostRecord &h = Slot(w.last);
        EXPECT_EQ(w.status, h.status) << w.last;
        EXPECT_EQ(w.status == 1 ? htonl(0xC6336400u + w.last) : 0u, h.address) << w.last;
        EXPECT_STREQ(w.name, h.name) << w.last;
        EXPECT_EQ(w.macKnown, h.macKnown) << w.last;
        EXPECT_EQ(w.mac0, h.mac[0]) << w.last;
        EXPECT_EQ(0u, h.listed);
    }
    EXPECT_EQ(0, memcmp("\x00\x1A\x2B\x3C\x4D\x5E", Slot(7).mac, 6));
    // Only hosts that answered were asked their name.
    EXPECT_EQ(4u, fake::g_lan.queried.size());
    EXPECT_EQ(0, fake::g_lan.socketsOpen);
}

TEST_F(Scan, MaskDoesNotMatterOnlyTheOwnAddress)
{
    SetAddress("192.168.7.254");
    ASSERT_TRUE(StartScan(nullptr));
    fake::RunThreads();
    EXPECT_EQ(htonl(0xC0A80701u), fake::g_lan.echoes.front().destination);
    EXPECT_EQ(htonl(0xC0A807FEu), fake::g_lan.echoes.back().destination);
}

TEST_F(Scan, ThreadHandleReachesAWorkerThatEndsAtOnce)
{
    // Threads that run the moment they may: each must find its handle set.
    fake::g_lan.deferThreads = false;
    fake::AddHost("198.51.100.7", true);
    ASSERT_TRUE(StartScan(nullptr));
    EXPECT_EQ(0, fake::PendingThreads());
    EXPECT_EQ(0, fake::g_lan.badHandleCloses);
    EXPECT_EQ(0, fake::g_lan.threadHandlesOpen);
    EXPECT_EQ(1, Slot(7).status);
}

TEST_F(Scan, MemoryShortfalls)
{
    fake::g_lan.allocFailCountdown = 2;       // adapters buffer, then the table
    EXPECT_FALSE(StartScan(nullptr));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    EXPECT_EQ(0, fake::g_lan.threadsCreated);

    fake::g_lan.allocFailCountdown = 3 + 9;   // ... and the tenth worker's record
    ASSERT_TRUE(StartScan(nullptr));
    EXPECT_EQ(253, fake::g_lan.threadsCreated);
    fake::RunThreads();
    EXPECT_EQ(0, Slot(10).status);           // pending for ever
    EXPECT_EQ(-1, Slot(11).status);
}

// The dialog closes while workers are still at their echo: they leave their
// slots as they are and the last one out frees the table.
TEST_F(Scan, ClosingMidScanDropsLateResults)
{
    fake::AddHost("198.51.100.7", true);
    fake::AddHost("198.51.100.200", true);
    dialog_ = CreateFromTemplate(IDD_INTRUDER, IntruderDlgProc);
    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads(100);                   // .1 .. .100 done
    HostTable *table = g_scan.table;
    EXPECT_EQ(1, table->hosts[6].status);
    Command(IDOK);
    EXPECT_EQ(nullptr, g_scan.table);
    EXPECT_EQ(1, fake::g_lan.liveBlocks - 154);   // the table, and 154 workers' records
    fake::RunThreads();
    // .200 answered after the close: not asked its name, its slot not written.
    EXPECT_EQ(std::vector<DWORD>{inet_addr("198.51.100.7")}, fake::g_lan.queried);
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_TRUE(fake::FreedBlocksUntouched());
    EXPECT_EQ(0, fake::g_lan.threadHandlesOpen);
}

TEST_F(Scan, DetectPressedTwiceKeepsEachScansWorkersOnTheirOwnTable)
{
    fake::AddHost("198.51.100.7", true);
    fake::AddHost("198.51.100.200", true);
    dialog_ = CreateFromTemplate(IDD_INTRUDER, IntruderDlgProc);
    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads(100);
    HostTable *first = g_scan.table;
    Command(IDC_INTRUDER_DETECT);
    HostTable *second = g_scan.table;
    ASSERT_NE(first, second);
    EXPECT_EQ(0, second->hosts[6].status);
    fake::RunThreads(154);                   // the first scan's late workers
    for (int i = 0; i < 254; i++)
        ASSERT_EQ(0, second->hosts[i].status) << i;
    EXPECT_TRUE(fake::FreedBlocksUntouched());
    fake::RunThreads();
    EXPECT_EQ(1, second->hosts[199].status);
    SendMessageW(dialog_, WM_TIMER, INTRUDER_TIMER_ID, 0);
    EXPECT_EQ(2, ListView_GetItemCount(GetDlgItem(dialog_, IDC_INTRUDER_LIST)));
    EXPECT_EQ(nullptr, g_scan.table);
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_TRUE(fake::FreedBlocksUntouched());
}

TEST_F(Scan, HundredStartCloseCyclesLeaveNothingBehind)
{
    fake::AddHost("198.51.100.7", true).nodeStatus = fake::NodeStatusReply("HOST", 1, 75);
    for (int cycle = 0; cycle < 100; cycle++) {
        dialog_ = CreateFromTemplate(IDD_INTRUDER, IntruderDlgProc);
        Command(IDC_INTRUDER_DETECT);
        fake::RunThreads(cycle % 7 * 40);     // some cycles close before any worker ran
        if (cycle % 3 == 0)
            Command(IDC_INTRUDER_DETECT);
        if (cycle % 5 == 0)
            SendMessageW(dialog_, WM_TIMER, INTRUDER_TIMER_ID, 0);
        Command(IDOK);
        DestroyWindow(dialog_);
        dialog_ = nullptr;
        fake::RunThreads(cycle % 4 * 50);     // workers of old scans run late
    }
    fake::RunThreads();
    EXPECT_EQ(0, fake::PendingThreads());
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_TRUE(fake::FreedBlocksUntouched());
    EXPECT_EQ(0, fake::g_lan.badHandleCloses);
    EXPECT_EQ(0, fake::g_lan.threadHandlesOpen);
    EXPECT_EQ(0, fake::g_lan.socketsOpen);
}

} // namespace
