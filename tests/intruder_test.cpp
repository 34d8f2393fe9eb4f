// intruder_test.cpp: the intruder scan and its workers, the detector dialog's rows and taps, the safe list, the CSV report.
#include "diagnostics/diagnostics.h"
#include "diagnostics/safelist.h"
#include "diagnostics/scan.h"
#include "platform/fake/fake_lan.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <commctrl.h>

#include <fstream>
#include <iterator>

namespace {

typedef std::vector<std::string> Lines;
const std::string kA("\x00\x1A\x2B\x3C\x4D\x5E", 6), kB("\x00\x0A\x00\x00\x00\x0B", 6), kC("\xFF\xEE\xDD\xCC\xBB\xAA", 6);
const BYTE *Bytes(const std::string &mac) { return reinterpret_cast<const BYTE *>(mac.data()); }

// A host that answers, with its ARP row and NetBIOS name when given.
fake::NetHost &Host(const char *ip, const std::string &mac = "", const char *name = nullptr)
{
    fake::NetHost &h = fake::AddHost(ip, true);
    if (!mac.empty())
        fake::SetMac(h, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    if (name)
        h.nodeStatus = fake::NodeStatusReply(name, 1, 75);
    return h;
}

// A desktop on 198.51.100.33 (whatever the mask) behind a loopback adapter, its current
// address unset as Wine leaves it; the detector open, threads held until the test runs them.
class Intruder : public DeviceTest {
protected:
    void SetUp() override
    {
        g_scan.table = nullptr;   // the fake's memory of the last test is gone
        DeviceTest::SetUp();
        fake::g_device.adapters = {{"loop", L"", MIB_IF_TYPE_LOOPBACK, 1, 0, 0}, {"eth0", L"", MIB_IF_TYPE_ETHERNET, 2, 0, 0}};
        fake::g_lan.addresses = {{"loop", "127.0.0.1", {9, 9, 9, 9, 9, 9}, 6, false},
                                 {"eth0", "198.51.100.33", {0x02, 0x00, 0x5E, 0x10, 0x00, 0x21}, 6, true}};
        fake::g_lan.deferThreads = true;
        dialog_ = CreateFromTemplate(IDD_INTRUDER, IntruderDlgProc);
        safeList_ = Path(L"\\slist.dat");
    }
    void TearDown() override
    {
        DestroyWindow(dialog_);
        g_scan.table = nullptr;
        DeviceTest::TearDown();
    }
    HostRecord &Slot(int lastByte) { return g_scan.table->hosts[lastByte - 1]; }
    void Command(int id) { SendMessageW(dialog_, WM_COMMAND, id, 0); }
    void Poll() { SendMessageW(dialog_, WM_TIMER, INTRUDER_TIMER_ID, 0); }
    void Scan(int workers = 254) { Command(IDC_INTRUDER_DETECT); fake::RunThreads(workers); Poll(); }
    HWND List() { return GetDlgItem(dialog_, IDC_INTRUDER_LIST); }
    // Each row as "host|ip|mac|image".
    Lines Rows()
    {
        Lines rows;
        WCHAR text[64];
        for (LVITEMW item = {LVIF_IMAGE}; ListView_GetItem(List(), &item); item.iItem++) {
            std::string row;
            for (int c = 0; c < 3; c++) {
                ListView_GetItemText(List(), item.iItem, c, text, 64);
                row += std::string(text, text + wcslen(text)) + "|";
            }
            rows.push_back(row + (item.iImage == 1 ? "safe" : "intruder"));
        }
        return rows;
    }
    void Tap(int row)
    {
        NMLISTVIEW tap = {{List(), IDC_INTRUDER_LIST, (UINT)NM_CLICK}, row};
        SendMessageW(dialog_, WM_NOTIFY, IDC_INTRUDER_LIST, (LPARAM)&tap);
    }
    std::wstring Path(const wchar_t *name, int n = 0)
    {
        WCHAR path[MAX_PATH];
        wsprintfW(path, name, n);
        return (n ? fake::g_device.personal : std::wstring(g_item.dataFolder)) + path;
    }
    std::string Read(const std::wstring &path)
    {
        std::ifstream in(path.c_str(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    void Write(const std::wstring &path, const std::string &bytes) { std::ofstream(path.c_str(), std::ios::binary) << bytes; }
    std::wstring Box(size_t i) { return fake::g_device.messageBoxes.at(i).text + L"|" + fake::g_device.messageBoxes[i].caption; }
    HWND dialog_ = nullptr;
    std::wstring safeList_;
};

TEST_F(Intruder, OneWorkerPerAddressOfTheOwnSlash24RecordsAddressMacAndNameAndLetsGoOfAll)
{
    Host("198.51.100.7", kA, "SAMBA1");
    Host("198.51.100.20", std::string("\1\2\3\4\5\6"));        // no NetBIOS
    Host("198.51.100.100").nodeStatus = fake::NodeStatusReply("NOARP", 1, 90);
    Host("198.51.100.201").replyFrom = inet_addr("198.51.100.1");
    ASSERT_TRUE(StartScan(nullptr));
    EXPECT_EQ(254, fake::RunThreads());
    ASSERT_EQ(254u, fake::g_lan.echoes.size());
    int last = 1;   // 198.51.100.1 onwards, with the scan's request
    for (const fake::Echo &e : fake::g_lan.echoes)
        EXPECT_TRUE(e.destination == htonl(0xC6336400u + last++) && e.requestAsSent && e.timeout == 5000) << last;
    const struct { int last; LONG status; const char *name; DWORD macKnown; BYTE mac0; } wants[] = {
        {7, 1, "SAMBA1", 1, 0x00}, {20, 1, "", 1, 0x01}, {100, 1, "NOARP", 0, 0}, {201, -1, "", 0, 0}, {33, -1, "", 0, 0}
    };
    for (auto w : wants) {
        HostRecord &h = Slot(w.last);
        EXPECT_TRUE(h.status == w.status && h.macKnown == w.macKnown && h.mac[0] == w.mac0) << w.last;
        EXPECT_EQ(w.status == 1 ? htonl(0xC6336400u + w.last) : 0u, h.address) << w.last;
        EXPECT_STREQ(w.name, h.name) << w.last;
    }
    EXPECT_EQ(3u, fake::g_lan.queried.size());   // only hosts that answered were asked their name
    // Every worker let go of what it had: sockets, handles, Winsock, its record; the table is the dialog's.
    EXPECT_EQ(0, fake::g_lan.icmpOpen + fake::g_lan.socketsOpen + fake::g_lan.threadHandlesOpen +
                     fake::g_lan.badHandleCloses + fake::g_lan.wsaBalance);
    EXPECT_EQ(1, fake::g_lan.liveBlocks);
    ReleaseScanTable();
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
    EXPECT_TRUE(fake::FreedBlocksUntouched());

    // Threads that run the moment they may: each must find its handle set.
    fake::g_lan.deferThreads = false;
    ASSERT_TRUE(StartScan(nullptr));
    EXPECT_EQ(0, fake::PendingThreads() + fake::g_lan.badHandleCloses + fake::g_lan.threadHandlesOpen);
    EXPECT_EQ(1, Slot(7).status);
    fake::g_lan.allocFailCountdown = 2;       // adapters buffer, then the table: silently no scan
    EXPECT_FALSE(StartScan(nullptr));
    fake::g_device.adapters.resize(1);        // loopback only: no address, no scan
    Command(IDC_INTRUDER_DETECT);
    EXPECT_EQ(L"Cannot get current IP address!|Error", Box(0));
    EXPECT_EQ(2 * 254, fake::g_lan.threadsCreated);
}

// Detect pressed again, then the dialog closed, while workers are still at
// their echo: each scan's workers keep to their own table, late results are
// dropped and the last worker out frees the table.
TEST_F(Intruder, ScansThatOverlapOrCloseMidwayKeepEachWorkerOnItsOwnTable)
{
    Host("198.51.100.7");
    Host("198.51.100.200");
    Scan(100);
    Command(IDC_INTRUDER_DETECT);
    HostTable *second = g_scan.table;
    fake::RunThreads(154);                   // the first scan's late workers
    for (int i = 0; i < 254; i++)
        ASSERT_EQ(0, second->hosts[i].status) << i;
    EXPECT_TRUE(fake::FreedBlocksUntouched());
    fake::RunThreads(100);
    EXPECT_EQ(1, second->hosts[6].status);
    Command(IDOK);
    EXPECT_EQ(nullptr, g_scan.table);
    EXPECT_EQ(1, fake::g_lan.liveBlocks - 154);   // the table, and 154 workers' records
    fake::RunThreads();
    // .200 answered after the first scan was replaced and after the close: never asked its name.
    EXPECT_EQ(std::vector<DWORD>(2, inet_addr("198.51.100.7")), fake::g_lan.queried);
    EXPECT_EQ(0, fake::g_lan.liveBlocks + fake::g_lan.threadHandlesOpen);
    EXPECT_TRUE(fake::FreedBlocksUntouched());
}

TEST_F(Intruder, RowsAppearTopFirstThenSortByAddressAndTapsAddToOrRemoveFromTheSafeList)
{
    Host("198.51.100.200", kA, "NMBD");
    Host("198.51.100.7", kB);
    Host("198.51.100.20");                                 // answered, no ARP row
    Host("198.51.100.33");                                 // the device itself, not in its own ARP table
    ASSERT_TRUE(SafeListAdd(Bytes(kB)));
    Scan(127);                                             // .1 .. .127
    EXPECT_EQ(50, SendDlgItemMessageW(dialog_, IDC_INTRUDER_PROGRESS, PBM_GETPOS, 0, 0));
    EXPECT_EQ((Lines{"|198.51.100.33|02:00:5E:10:00:21|safe", "|198.51.100.20||intruder",
                     "|198.51.100.7|00:0A:00:00:00:0B|safe"}),
              Rows());
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_INTRUDER_EXPORT)));
    Poll();                                                // nothing new: no row twice
    EXPECT_EQ(3u, Rows().size());
    fake::RunThreads();
    Poll();
    EXPECT_EQ(100, SendDlgItemMessageW(dialog_, IDC_INTRUDER_PROGRESS, PBM_GETPOS, 0, 0));
    EXPECT_EQ((Lines{"|198.51.100.7|00:0A:00:00:00:0B|safe", "|198.51.100.20||intruder",
                     "|198.51.100.33|02:00:5E:10:00:21|safe", "NMBD|198.51.100.200|00:1A:2B:3C:4D:5E|intruder"}),
              Rows());
    EXPECT_EQ(0, fake::g_lan.liveBlocks);

    // The device's own row, a row without a MAC and a tap beside the rows ask nothing.
    Tap(2);
    Tap(1);
    Tap(-1);
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    fake::g_device.messageBoxAnswer = IDNO;
    Tap(3);
    EXPECT_EQ(L"Add NMBD to safe list?|Question", Box(0));
    EXPECT_EQ((UINT)(MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2), fake::g_device.messageBoxes[0].type);
    EXPECT_EQ(kB, Read(safeList_));
    fake::g_device.messageBoxAnswer = IDYES;
    Tap(3);
    Tap(0);                                                // no name: asked by its address
    EXPECT_EQ(L"Delete 198.51.100.7 from safe list?|Question", Box(2));
    EXPECT_EQ(kA, Read(safeList_));
    EXPECT_EQ((Lines{"|198.51.100.7|00:0A:00:00:00:0B|intruder", "NMBD|198.51.100.200|00:1A:2B:3C:4D:5E|safe"}),
              (Lines{Rows().at(0), Rows().at(3)}));
}

TEST_F(Intruder, SafeListFile)
{
    EXPECT_FALSE(SafeListContains(Bytes(kA)) || SafeListRemove(nullptr, Bytes(kA)));
    for (const std::string &m : {kA, kB, kC, kA})
        EXPECT_TRUE(SafeListAdd(Bytes(m)));
    EXPECT_TRUE(SafeListRemove(nullptr, Bytes(kA)));      // twice in the file: one removal takes both
    EXPECT_TRUE(SafeListContains(Bytes(kC)) && !SafeListContains(Bytes(kA)));
    EXPECT_FALSE(SafeListRemove(nullptr, Bytes(kA)));     // rewritten all the same
    EXPECT_EQ(kB + kC, Read(safeList_));
    // A cut last record is read over the bytes of the one before it.
    Write(safeList_, kA + "\xFF\xEE\xDD");
    EXPECT_TRUE(SafeListContains(Bytes("\xFF\xEE\xDD\x3C\x4D\x5E")) && !SafeListContains(Bytes(kC)));
    // A list that cannot be deleted stays as it was, and says so.
    Write(safeList_, kA + kB);
    HANDLE held = CreateFileW(safeList_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(SafeListRemove(nullptr, Bytes(kA)));
    CloseHandle(held);
    EXPECT_EQ(kA + kB, Read(safeList_));
    EXPECT_EQ(L"Cannot delete host!|Error", Box(0));
}

TEST_F(Intruder, ReportNumbersRowsAndMessages)
{
    const wchar_t *report = L"\\QuorvaneRpt%03d.csv";
    Host("198.51.100.20", "", "NOMAC");
    Write(Path(report, 1), "x");
    Write(Path(report, 3), "x");
    const std::string header = "\"Host\",\"Intruder\",\"IP\",\"Mac Addr\"\n";
    Command(IDC_INTRUDER_EXPORT);   // an empty list: the header alone
    EXPECT_EQ(header, Read(Path(report, 2)));
    Scan();
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(header + "\"NOMAC\",\"Yes\",\"198.51.100.20\",\"\"\n", Read(Path(report, 4)));   // no MAC: never known
    // Numbers up to 599 only: with all of them taken nothing is written or said.
    for (int n = 5; n <= 598; n++)
        Write(Path(report, n), "");
    fake::g_device.messageBoxes.clear();
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Path(report, 599).c_str()));
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Path(report, 600).c_str()));
    // A folder that cannot take the file.
    fake::g_device.personal = TestRoot() + L"\\no such folder";
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(L"Output to file error!|Infomation", Box(1));
}

} // namespace
