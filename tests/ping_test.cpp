// ping_test.cpp: the ping dialog on the fake device: host list file, result lines, MAC, soft input panel.
#include "diagnostics/diagnostics.h"
#include "diagnostics/scan.h"
#include "platform/fake/fake_lan.h"
#include "platform/fake/fake_shell.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <fstream>
#include <iterator>

namespace {

class Ping : public DeviceTest {
protected:
    void TearDown() override
    {
        DestroyWindow(dialog_);
        DeviceTest::TearDown();
    }
    void Open(int id = IDD_PING)
    {
        DestroyWindow(dialog_);
        dialog_ = CreateFromTemplate(id, PingDlgProc);
    }
    std::wstring Text(int id)
    {
        WCHAR text[256] = L"";
        GetDlgItemTextW(dialog_, id, text, 256);
        return text;
    }
    void Command(int id, int code = BN_CLICKED)
    {
        SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, code), (LPARAM)GetDlgItem(dialog_, id));
    }
    // Types a host and presses Ping; the echo goes when timer 10 fires.
    void PingNow(const wchar_t *host)
    {
        SetDlgItemTextW(dialog_, IDC_PING_HOST, host);
        Command(IDC_PING_GO);
        SendMessageW(dialog_, WM_TIMER, PING_TIMER_ID, 0);
    }
    std::vector<std::wstring> Listed()
    {
        std::vector<std::wstring> rows;
        HWND combo = GetDlgItem(dialog_, IDC_PING_HOST);
        int n = (int)SendMessageW(combo, CB_GETCOUNT, 0, 0);
        for (int i = 0; i < n; i++) {
            WCHAR row[128] = L"";
            SendMessageW(combo, CB_GETLBTEXT, i, (LPARAM)row);
            rows.push_back(row);
        }
        return rows;
    }
    std::wstring Path(bool temporary = false)
    {
        WCHAR path[MAX_PATH];
        HostListPath(path, temporary);
        return path;
    }
    std::string FileBytes()
    {
        std::ifstream in(Path().c_str(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    // The hosts a file holds, record by record.
    std::vector<std::wstring> FileHosts()
    {
        std::string bytes = FileBytes();
        EXPECT_EQ(0u, bytes.size() % 200);
        std::vector<std::wstring> hosts;
        for (size_t i = 0; i + 200 <= bytes.size(); i += 200)
            hosts.push_back(reinterpret_cast<const wchar_t *>(bytes.data() + i));
        return hosts;
    }
    HWND dialog_ = nullptr;
};

TEST_F(Ping, OpensWithTheListAndTheLastHostBothTemplates)
{
    AddHost(nullptr, L"alpha");
    AddHost(nullptr, L"10.0.0.1");
    WriteSettingString(L"pinghost", L"10.0.0.1");
    for (int id : {IDD_PING, IDD_PING_WIDE}) {
        fake::g_sip.requests.clear();
        Open(id);
        EXPECT_EQ((std::vector<std::wstring>{L"alpha", L"10.0.0.1"}), Listed()) << id;
        EXPECT_EQ(L"10.0.0.1", Text(IDC_PING_HOST)) << id;
        EXPECT_EQ(L"Keyboard", Text(IDC_PING_KEYBOARD));
        EXPECT_EQ(L"", Text(IDC_PING_STATUS));
        // Lowered first; the combo then takes the focus, which raises it.
        ASSERT_FALSE(fake::g_sip.requests.empty());
        EXPECT_EQ(SIP_DOWN, fake::g_sip.requests[0]);
        // Lifted 26 above the centre, one pixel larger each way.
        SIZE size = TemplateSize(id);
        RECT rc;
        GetWindowRect(dialog_, &rc);
        EXPECT_EQ(size.cx + 1, rc.right - rc.left);
        EXPECT_EQ(size.cy + 1, rc.bottom - rc.top);
        EXPECT_EQ((240 - size.cx - 1) / 2, rc.left);
        EXPECT_EQ((320 - size.cy - 1) / 2 - 26, rc.top);
    }
    HWND edit = GetWindow(GetDlgItem(dialog_, IDC_PING_HOST), GW_CHILD);
    EXPECT_EQ(99, SendMessageW(edit, EM_GETLIMITTEXT, 0, 0));
}

TEST_F(Ping, HostListKeepsOrderAndIgnoresCase)
{
    Open();
    fake::g_lan.names.push_back({"example.com", 0});
    PingNow(L"example.com");
    PingNow(L"Example.COM");
    PingNow(L"10.0.0.1");
    PingNow(L"third");
    EXPECT_EQ((std::vector<std::wstring>{L"example.com", L"10.0.0.1", L"third"}), FileHosts());
    EXPECT_EQ(FileHosts(), Listed());
    EXPECT_EQ(L"third", Text(IDC_PING_HOST));

    // Delete the middle one, typed in another case: the rest keep their order.
    fake::g_device.messageBoxAnswer = IDYES;
    SetDlgItemTextW(dialog_, IDC_PING_HOST, L"10.0.0.1");
    Command(IDC_PING_DELETE);
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Are you sure you want to delete this host?", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Question", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ(36u, fake::g_device.messageBoxes[0].type);
    EXPECT_EQ((std::vector<std::wstring>{L"example.com", L"third"}), FileHosts());
    EXPECT_EQ(FileHosts(), Listed());
    EXPECT_EQ(L"", Text(IDC_PING_HOST));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Path(true).c_str()));

    // No: nothing leaves the file, yet the combo and the lines are cleared.
    fake::g_device.messageBoxAnswer = IDNO;
    SetDlgItemTextW(dialog_, IDC_PING_STATUS, L"stale");
    SetDlgItemTextW(dialog_, IDC_PING_HOST, L"EXAMPLE.com");
    Command(IDC_PING_DELETE);
    EXPECT_EQ(2u, FileHosts().size());
    EXPECT_EQ(L"", Text(IDC_PING_HOST));
    EXPECT_EQ(L"", Text(IDC_PING_STATUS));

    fake::g_device.messageBoxAnswer = IDYES;
    for (const wchar_t *host : {L"EXAMPLE.com", L"THIRD"}) {
        SetDlgItemTextW(dialog_, IDC_PING_HOST, host);
        Command(IDC_PING_DELETE);
    }
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Path().c_str()));   // the last one takes the file
    EXPECT_TRUE(Listed().empty());
}

TEST_F(Ping, RecordOfNinetyNineCharactersEndsWithItsTerminator)
{
    std::wstring host(99, L'n');
    EXPECT_TRUE(AddHost(nullptr, host.c_str()));
    std::string bytes = FileBytes();
    ASSERT_EQ(200u, bytes.size());
    EXPECT_EQ(host, std::wstring(reinterpret_cast<const wchar_t *>(bytes.data()), 99));
    EXPECT_EQ(std::string(2, '\0'), bytes.substr(198));
}

TEST_F(Ping, ResultLines)
{
    fake::NetHost &alive = fake::AddHost("10.0.0.1", true);
    alive.roundTrip = 7;
    fake::SetMac(alive, 0x00, 0x0A, 0xB0, 0xC1, 0x0D, 0xFF);
    fake::NetHost &noArp = fake::AddHost("198.51.100.9", true);
    noArp.roundTrip = 12;
    fake::NetHost &relayed = fake::AddHost("10.0.0.3", true);
    relayed.replyFrom = inet_addr("10.0.0.254");
    fake::NetHost &unresolved = fake::AddHost("10.0.0.4", true);
    unresolved.inArp = true;          // a row still resolving: its MAC all zero
    unresolved.macLength = 6;
    fake::g_lan.names.push_back({"printer.lan", inet_addr("10.0.0.1")});
    struct Case {
        const wchar_t *host;
        const wchar_t *status, *time, *mac;
    } cases[] = {
        {L"10.0.0.1", L"Host (10.0.0.1) is alive", L"Round Trip Time: 7 ms", L"MAC Address: 00:0A:B0:C1:0D:FF"},
        {L"printer.lan", L"Host (10.0.0.1) is alive", L"Round Trip Time: 7 ms", L"MAC Address: 00:0A:B0:C1:0D:FF"},
        {L"198.51.100.9", L"Host (198.51.100.9) is alive", L"Round Trip Time: 12 ms", L""},
        {L"10.0.0.4", L"Host (10.0.0.4) is alive", L"Round Trip Time: 3 ms", L""},
        {L"10.0.0.2", L"Request timed out.", L"", L""},
        {L"10.0.0.3", L"Destination host unreachable.", L"", L""},
        {L"nowhere.invalid", L"Unknown host: nowhere.invalid", L"", L""},
    };
    Open();
    for (const Case &c : cases) {
        SetDlgItemTextW(dialog_, IDC_PING_TIME, L"stale");
        SetDlgItemTextW(dialog_, IDC_PING_MAC, L"stale");
        SetDlgItemTextW(dialog_, IDC_PING_HOST, c.host);
        Command(IDC_PING_GO);
        EXPECT_EQ(L"Pinging...", Text(IDC_PING_STATUS)) << c.host;
        EXPECT_EQ(L"", Text(IDC_PING_MAC)) << c.host;
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_PING_GO)));
        EXPECT_TRUE(fake::g_lan.echoes.empty() || fake::g_lan.echoes.back().destination != 0);
        SendMessageW(dialog_, WM_TIMER, PING_TIMER_ID, 0);
        EXPECT_EQ(c.status, Text(IDC_PING_STATUS)) << c.host;
        EXPECT_EQ(c.time, Text(IDC_PING_TIME)) << c.host;
        EXPECT_EQ(c.mac, Text(IDC_PING_MAC)) << c.host;
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_PING_GO)));
        WCHAR stored[128] = L"";
        ReadSettingString(L"pinghost", stored, sizeof stored);
        EXPECT_STREQ(c.host, stored);
    }
    // Address literals are never looked up; every echo went out as specified.
    EXPECT_EQ((std::vector<std::string>{"printer.lan", "nowhere.invalid"}), fake::g_lan.lookedUp);
    ASSERT_EQ(6u, fake::g_lan.echoes.size());
    for (const fake::Echo &e : fake::g_lan.echoes) {
        EXPECT_TRUE(e.requestAsSent);
        EXPECT_EQ(5000u, e.timeout);
    }
    EXPECT_EQ(0, fake::g_lan.icmpOpen);
    EXPECT_EQ(0, fake::g_lan.wsaBalance);
    EXPECT_EQ(std::vector<WORD>(7, 0x0102), fake::g_lan.wsaVersions);
}

TEST_F(Ping, NoPingServiceAndEmptyHost)
{
    fake::g_lan.noIcmp = true;
    Open();
    PingNow(L"10.0.0.1");
    EXPECT_EQ(L"Error: No ping service", Text(IDC_PING_STATUS));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());

    PingNow(L"");
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Host name is empty", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ(1u, FileHosts().size());
}

TEST_F(Ping, ArpTableThatGrowsMeanwhileIsReadAgain)
{
    fake::SetMac(fake::AddHost("10.0.0.1", true), 1, 2, 3, 4, 5, 6);
    fake::g_lan.arpGrowths = 2;
    Open();
    PingNow(L"10.0.0.1");
    EXPECT_EQ(L"MAC Address: 01:02:03:04:05:06", Text(IDC_PING_MAC));
    EXPECT_EQ(0, fake::g_lan.liveBlocks);
}

TEST_F(Ping, KeyboardAndFocusRaiseAndLowerThePanel)
{
    Open();
    SetFocus(GetDlgItem(dialog_, IDOK));
    Command(IDC_PING_KEYBOARD);      // the focus on the combo raised it already
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);
    Command(IDC_PING_KEYBOARD);
    EXPECT_EQ(SIP_UP, fake::g_sip.state);
    EXPECT_EQ(GetDlgItem(dialog_, IDC_PING_HOST), GetParent(GetFocus()));
    Command(IDC_PING_KEYBOARD);
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);
    Command(IDC_PING_HOST, CBN_SETFOCUS);
    EXPECT_EQ(SIP_UP, fake::g_sip.state);
    PingNow(L"10.0.0.1");
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);
    Command(IDC_PING_HOST, CBN_SETFOCUS);
    fake::g_sip.requests.clear();
    Command(IDOK);
    EXPECT_EQ(std::vector<SIPSTATE>{SIP_DOWN}, fake::g_sip.requests);
}

} // namespace
