// intruder_test.cpp: the detector dialog's rows, progress and taps; the safe list file; the CSV report.
#include "diagnostics/diagnostics.h"
#include "diagnostics/safelist.h"
#include "diagnostics/scan.h"
#include "platform/fake/fake_lan.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <commctrl.h>
#include <string.h>

#include <fstream>
#include <iterator>

namespace {

const BYTE kOwnMac[6] = {0x02, 0x00, 0x5E, 0x10, 0x00, 0x21};
const BYTE kA[6] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
const BYTE kB[6] = {0x00, 0x0A, 0x00, 0x00, 0x00, 0x0B};
const BYTE kC[6] = {0xFF, 0xEE, 0xDD, 0xCC, 0xBB, 0xAA};

std::string ReadAll(const std::wstring &path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteAll(const std::wstring &path, const std::string &bytes)
{
    std::ofstream out(path.c_str(), std::ios::binary);
    out << bytes;
}

std::string Mac(const BYTE *m)
{
    return std::string(reinterpret_cast<const char *>(m), 6);
}

class Detector : public DeviceTest {
protected:
    void SetUp() override
    {
        g_scan.table = nullptr;
        DeviceTest::SetUp();
        fake::g_device.adapters.push_back({"eth0", L"", MIB_IF_TYPE_ETHERNET, 2, 0, 0});
        fake::AdapterAddress eth = {"eth0", "198.51.100.33", {}, 6, false};
        memcpy(eth.mac, kOwnMac, 6);
        fake::g_lan.addresses.push_back(eth);
        fake::g_lan.deferThreads = true;
    }
    void TearDown() override
    {
        DestroyWindow(dialog_);
        g_scan.table = nullptr;
        DeviceTest::TearDown();
    }
    void Open() { dialog_ = CreateFromTemplate(IDD_INTRUDER, IntruderDlgProc); }
    void Command(int id)
    {
        SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), (LPARAM)GetDlgItem(dialog_, id));
    }
    void Poll() { SendMessageW(dialog_, WM_TIMER, INTRUDER_TIMER_ID, 0); }
    HWND List() { return GetDlgItem(dialog_, IDC_INTRUDER_LIST); }
    int Progress() { return (int)SendDlgItemMessageW(dialog_, IDC_INTRUDER_PROGRESS, PBM_GETPOS, 0, 0); }
    // Each row as "host|ip|mac|image".
    std::vector<std::string> Rows()
    {
        std::vector<std::string> rows;
        for (int i = 0; i < ListView_GetItemCount(List()); i++) {
            std::string row;
            for (int c = 0; c < 3; c++) {
                WCHAR text[64] = L"";
                ListView_GetItemText(List(), i, c, text, 64);
                for (WCHAR *p = text; *p; p++)
                    row += (char)*p;
                row += "|";
            }
            LVITEMW item = {};
            item.mask = LVIF_IMAGE;
            item.iItem = i;
            ListView_GetItem(List(), &item);
            rows.push_back(row + (item.iImage == 1 ? "safe" : "intruder"));
        }
        return rows;
    }
    void Tap(int row)
    {
        NMLISTVIEW tap = {};
        tap.hdr.hwndFrom = List();
        tap.hdr.idFrom = IDC_INTRUDER_LIST;
        tap.hdr.code = NM_CLICK;
        tap.iItem = row;
        SendMessageW(dialog_, WM_NOTIFY, IDC_INTRUDER_LIST, (LPARAM)&tap);
    }
    std::wstring SafeList()
    {
        WCHAR path[MAX_PATH];
        SafeListPath(path);
        return path;
    }
    std::wstring Report(int n)
    {
        WCHAR name[64];
        wsprintfW(name, L"\\QuorvaneRpt%03d.csv", n);
        return fake::g_device.personal + name;
    }
    HWND dialog_ = nullptr;
};

TEST_F(Detector, OpensIdleWithItsColumns)
{
    Open();
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_INTRUDER_EXPORT)));
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_INTRUDER_DETECT)));
    EXPECT_EQ(0, Progress());
    const wchar_t *headings[] = {L"Host", L"IP", L"Mac Address"};
    const int widths[] = {80, 120, 160};
    for (int i = 0; i < 3; i++) {
        WCHAR text[32] = L"";
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = text;
        column.cchTextMax = 32;
        ASSERT_TRUE(ListView_GetColumn(List(), i, &column));
        EXPECT_STREQ(headings[i], text);
        EXPECT_EQ(widths[i], column.cx);
    }
    HIMAGELIST images = ListView_GetImageList(List(), LVSIL_SMALL);
    ASSERT_NE(nullptr, images);
    EXPECT_EQ(2, ImageList_GetImageCount(images));
    // Portrait: centred; the window one pixel larger each way.
    SIZE size = TemplateSize(IDD_INTRUDER);
    RECT rc;
    GetWindowRect(dialog_, &rc);
    EXPECT_EQ(size.cx + 1, rc.right - rc.left);
    EXPECT_EQ((240 - size.cx - 1) / 2, rc.left);
    EXPECT_EQ((320 - size.cy - 1) / 2, rc.top);
}

TEST_F(Detector, LandscapeKeepsItsTopBelowTheTaskbar)
{
    fake::SetScreen(320, 240);
    Open();
    SIZE size = TemplateSize(IDD_INTRUDER);
    RECT rc;
    GetWindowRect(dialog_, &rc);
    int y = (240 - size.cy - 1) / 2;
    EXPECT_EQ(y > 26 ? y : 26, rc.top);
    EXPECT_EQ((320 - size.cx - 1) / 2, rc.left);
}

TEST_F(Detector, RowsAppearTopFirstThenSortByAddress)
{
    fake::NetHost &named = fake::AddHost("198.51.100.200", true);
    fake::SetMac(named, kA[0], kA[1], kA[2], kA[3], kA[4], kA[5]);
    named.nodeStatus = fake::NodeStatusReply("NMBD", 1, 75);
    fake::SetMac(fake::AddHost("198.51.100.7", true), kB[0], kB[1], kB[2], kB[3], kB[4], kB[5]);
    fake::AddHost("198.51.100.20", true);                  // answered, no ARP row
    fake::AddHost("198.51.100.33", true);                  // the device itself, not in its own ARP table
    ASSERT_TRUE(SafeListAdd(kB));
    Open();
    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads(127);                                 // .1 .. .127
    Poll();
    EXPECT_EQ(50, Progress());
    EXPECT_EQ((std::vector<std::string>{"|198.51.100.33|02:00:5E:10:00:21|safe",
                                        "|198.51.100.20||intruder",
                                        "|198.51.100.7|00:0A:00:00:00:0B|safe"}),
              Rows());
    EXPECT_EQ(3u, fake::g_lan.sleeps.size());
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_INTRUDER_EXPORT)));
    EXPECT_NE(nullptr, g_scan.table);
    Poll();                                                // nothing new: no row twice
    EXPECT_EQ(3, ListView_GetItemCount(List()));
    fake::RunThreads();
    Poll();
    EXPECT_EQ(100, Progress());
    EXPECT_EQ((std::vector<std::string>{"|198.51.100.7|00:0A:00:00:00:0B|safe",
                                        "|198.51.100.20||intruder",
                                        "|198.51.100.33|02:00:5E:10:00:21|safe",
                                        "NMBD|198.51.100.200|00:1A:2B:3C:4D:5E|intruder"}),
              Rows());
    EXPECT_EQ(nullptr, g_scan.table);
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
}

TEST_F(Detector, OnlyTheDeviceAnswers)
{
    fake::AddHost("198.51.100.33", true);
    Open();
    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads();
    Poll();
    EXPECT_EQ(std::vector<std::string>{"|198.51.100.33|02:00:5E:10:00:21|safe"}, Rows());
    // Tapping the device's own row asks nothing.
    Tap(0);
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
}

TEST_F(Detector, NoAddressNoScan)
{
    fake::g_device.adapters.clear();
    Open();
    Command(IDC_INTRUDER_DETECT);
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Cannot get current IP address!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(0, fake::g_lan.threadsCreated);
}

TEST_F(Detector, TapsAddToAndRemoveFromTheSafeList)
{
    fake::SetMac(fake::AddHost("198.51.100.7", true), kA[0], kA[1], kA[2], kA[3], kA[4], kA[5]);
    fake::NetHost &named = fake::AddHost("198.51.100.9", true);
    fake::SetMac(named, kC[0], kC[1], kC[2], kC[3], kC[4], kC[5]);
    named.nodeStatus = fake::NodeStatusReply("PRINTER", 1, 75);
    Open();
    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads();
    Poll();
    ASSERT_EQ(2, ListView_GetItemCount(List()));

    fake::g_device.messageBoxAnswer = IDNO;
    Tap(0);
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Add 198.51.100.7 to safe list?", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Question", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ((UINT)(MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2), fake::g_device.messageBoxes[0].type);
    EXPECT_EQ("", ReadAll(SafeList()));

    fake::g_device.messageBoxAnswer = IDYES;
    Tap(0);
    Tap(1);
    EXPECT_EQ(L"Add PRINTER to safe list?", fake::g_device.messageBoxes.back().text);
    EXPECT_EQ(Mac(kA) + Mac(kC), ReadAll(SafeList()));
    EXPECT_EQ((std::vector<std::string>{"|198.51.100.7|00:1A:2B:3C:4D:5E|safe",
                                        "PRINTER|198.51.100.9|FF:EE:DD:CC:BB:AA|safe"}),
              Rows());
    Tap(0);
    EXPECT_EQ(L"Delete 198.51.100.7 from safe list?", fake::g_device.messageBoxes.back().text);
    EXPECT_EQ(Mac(kC), ReadAll(SafeList()));
    EXPECT_EQ("|198.51.100.7|00:1A:2B:3C:4D:5E|intruder", Rows()[0]);
    Tap(-1);
    EXPECT_EQ(4u, fake::g_device.messageBoxes.size());
}

TEST_F(Detector, SafeListFile)
{
    EXPECT_FALSE(SafeListContains(kA));
    EXPECT_FALSE(SafeListRemove(nullptr, kA));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(SafeList().c_str()));
    for (const BYTE *m : {kA, kB, kC})
        EXPECT_TRUE(SafeListAdd(m));
    EXPECT_TRUE(SafeListRemove(nullptr, kB));
    EXPECT_EQ(Mac(kA) + Mac(kC), ReadAll(SafeList()));
    EXPECT_FALSE(SafeListContains(kB));
    EXPECT_TRUE(SafeListContains(kC));
    EXPECT_FALSE(SafeListRemove(nullptr, kB));           // rewritten all the same
    EXPECT_EQ(Mac(kA) + Mac(kC), ReadAll(SafeList()));

    // Twice in the file: one removal takes both.
    WriteAll(SafeList(), Mac(kA) + Mac(kB) + Mac(kA));
    EXPECT_TRUE(SafeListRemove(nullptr, kA));
    EXPECT_EQ(Mac(kB), ReadAll(SafeList()));

    // A cut last record is read over the bytes of the one before it.
    WriteAll(SafeList(), Mac(kA) + std::string("\xFF\xEE\xDD", 3));
    BYTE mixed[6] = {0xFF, 0xEE, 0xDD, 0x3C, 0x4D, 0x5E};
    EXPECT_TRUE(SafeListContains(mixed));
    EXPECT_FALSE(SafeListContains(kC));

    // A list that cannot be deleted stays as it was, and says so.
    WriteAll(SafeList(), Mac(kA) + Mac(kB));
    HANDLE held = CreateFileW(SafeList().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(SafeListRemove(nullptr, kA));
    CloseHandle(held);
    EXPECT_EQ(Mac(kA) + Mac(kB), ReadAll(SafeList()));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Cannot delete host!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ((UINT)MB_ICONHAND, fake::g_device.messageBoxes[0].type);
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW((std::wstring(g_item.dataFolder) + L"\\tmpslist").c_str()));
}

TEST_F(Detector, ReportNumbersRowsAndMessages)
{
    fake::SetMac(fake::AddHost("198.51.100.7", true), kA[0], kA[1], kA[2], kA[3], kA[4], kA[5]);
    fake::AddHost("198.51.100.20", true).nodeStatus = fake::NodeStatusReply("NOMAC", 1, 75);
    fake::AddHost("198.51.100.33", true);
    fake::SetMac(fake::AddHost("198.51.100.40", true), kB[0], kB[1], kB[2], kB[3], kB[4], kB[5]);
    SafeListAdd(kB);
    WriteAll(Report(1), "x");
    WriteAll(Report(3), "x");
    Open();
    Command(IDC_INTRUDER_EXPORT);   // an empty list: the header alone
    EXPECT_EQ("\"Host\",\"Intruder\",\"IP\",\"Mac Addr\"\n", ReadAll(Report(2)));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Data output to: " + Report(2), fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Infomation", fake::g_device.messageBoxes[0].caption);

    Command(IDC_INTRUDER_DETECT);
    fake::RunThreads();
    Poll();
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ("\"Host\",\"Intruder\",\"IP\",\"Mac Addr\"\n"
              "\"\",\"Yes\",\"198.51.100.7\",\"00:1A:2B:3C:4D:5E\"\n"
              "\"NOMAC\",\"Yes\",\"198.51.100.20\",\"\"\n"
              "\"\",\"No\",\"198.51.100.33\",\"02:00:5E:10:00:21\"\n"
              "\"\",\"No\",\"198.51.100.40\",\"00:0A:00:00:00:0B\"\n",
              ReadAll(Report(4)));

    // Numbers up to 599 only: with all of them taken nothing is written or said.
    for (int n = 5; n <= 598; n++)
        WriteAll(Report(n), "");
    fake::g_device.messageBoxes.clear();
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Report(599).c_str()));
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Report(600).c_str()));

    // A folder that cannot take the file.
    fake::g_device.personal = TestRoot() + L"\\no such folder";
    Command(IDC_INTRUDER_EXPORT);
    EXPECT_EQ(L"Output to file error!", fake::g_device.messageBoxes.back().text);
    EXPECT_EQ(L"Infomation", fake::g_device.messageBoxes.back().caption);
}

} // namespace
