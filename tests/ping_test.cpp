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
    void TearDown() override { DestroyWindow(dialog_); DeviceTest::TearDown(); }
    void Open(int id = IDD_PING) { DestroyWindow(dialog_); dialog_ = CreateFromTemplate(id, PingDlgProc); }
    Texts Shows(std::initializer_list<int> ids) { return ControlTexts(dialog_, ids); }
    void Command(int id, int code = BN_CLICKED) { SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, code), 0); }
    // Types a host and presses `button`; a ping's echo goes when its timer fires.
    void Press(const wchar_t *host, int button = IDC_PING_GO)
    {
        SetDlgItemTextW(dialog_, IDC_PING_HOST, host);
        Command(button);
        if (button == IDC_PING_GO)
            SendMessageW(dialog_, WM_TIMER, PING_TIMER_ID, 0);
    }
    Texts Listed()
    {
        Texts rows;
        WCHAR row[128];
        for (int i = 0; SendDlgItemMessageW(dialog_, IDC_PING_HOST, CB_GETLBTEXT, i, (LPARAM)row) != CB_ERR; i++)
            rows.push_back(row);
        return rows;
    }
    std::wstring Path(const wchar_t *name = L"\\hosts.dat") { return g_item.dataFolder + std::wstring(name); }
    // The host file as UTF-16 text, its zeros included.
    std::wstring FileText()
    {
        std::ifstream in(Path().c_str(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        return std::wstring(reinterpret_cast<const wchar_t *>(bytes.data()), bytes.size() / 2);
    }
    std::wstring Box(size_t i) { return fake::g_device.messageBoxes.at(i).text + L"|" + fake::g_device.messageBoxes[i].caption; }
    HWND dialog_ = nullptr;
};

TEST_F(Ping, OpensWithTheListAndKeepsThePanelOutOfTheWay)
{
    AddHost(nullptr, L"alpha");
    AddHost(nullptr, L"10.0.0.1");
    Open(IDD_PING_WIDE);
    EXPECT_EQ((Texts{L"alpha", L"10.0.0.1"}), Listed());
    EXPECT_EQ(SIP_DOWN, fake::g_sip.requests.at(0));   // lowered first; the combo then takes the focus, which raises it
    EXPECT_EQ(99, SendMessageW(GetWindow(GetDlgItem(dialog_, IDC_PING_HOST), GW_CHILD), EM_GETLIMITTEXT, 0, 0));

    SetFocus(GetDlgItem(dialog_, IDOK));
    Command(IDC_PING_KEYBOARD);   // the focus on the combo raised the panel: the button lowers it
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);
    Command(IDC_PING_KEYBOARD);   // and raises it, the focus on the host
    EXPECT_TRUE(fake::g_sip.state == SIP_UP && GetParent(GetFocus()) == GetDlgItem(dialog_, IDC_PING_HOST));
    fake::g_sip.requests.clear();
    Command(IDOK);                // closing lowers it
    EXPECT_EQ(std::vector<SIPSTATE>{SIP_DOWN}, fake::g_sip.requests);
}

TEST_F(Ping, HostListKeepsOrderAndIgnoresCase)
{
    Open();
    const std::wstring longest(99, L'n');   // its record ends with its terminator
    for (const wchar_t *host : {L"example.com", L"Example.COM", longest.c_str(), L"third"})
        Press(host);
    const std::wstring zeros(95, 0);   // 200-byte records, zero after the host
    EXPECT_EQ(L"example.com" + zeros.substr(6) + longest + L'\0' + L"third" + zeros, FileText());
    EXPECT_EQ((Texts{L"example.com", longest, L"third"}), Listed());

    // Delete the middle one, typed in another case: the rest keep their order.
    fake::g_device.messageBoxAnswer = IDYES;
    Press(std::wstring(99, L'N').c_str(), IDC_PING_DELETE);
    EXPECT_EQ(L"Are you sure you want to delete this host?|Question", Box(0));
    EXPECT_EQ((Texts{L"example.com", L"third"}), Listed());
    EXPECT_EQ(L"example.com" + zeros.substr(6) + L"third" + zeros, FileText());
    EXPECT_EQ(Texts{L""}, Shows({IDC_PING_HOST}));
    Press(L"EXAMPLE.com", IDC_PING_DELETE);
    Press(L"THIRD", IDC_PING_DELETE);
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Path().c_str()));   // the last one takes the file
    EXPECT_TRUE(Listed().empty());
}

TEST_F(Ping, ResultLinesAndTheLastHostKept)
{
    fake::NetHost &alive = fake::AddHost("10.0.0.1", true);
    alive.roundTrip = 7;
    fake::SetMac(alive, 0x00, 0x0A, 0xB0, 0xC1, 0x0D, 0xFF);
    fake::AddHost("198.51.100.9", true).roundTrip = 12;
    fake::AddHost("10.0.0.3", true).replyFrom = inet_addr("10.0.0.254");
    fake::NetHost &unresolved = fake::AddHost("10.0.0.4", true);
    unresolved.inArp = true;          // a row still resolving: its MAC all zero
    unresolved.macLength = 6;
    fake::g_lan.arpGrowths = 2;       // the ARP table grows meanwhile: read again
    const struct { const wchar_t *host; Texts shown; } cases[] = {
        {L"10.0.0.1", {L"Host (10.0.0.1) is alive", L"Round Trip Time: 7 ms", L"MAC Address: 00:0A:B0:C1:0D:FF"}},
        {L"198.51.100.9", {L"Host (198.51.100.9) is alive", L"Round Trip Time: 12 ms", L""}},
        {L"10.0.0.4", {L"Host (10.0.0.4) is alive", L"Round Trip Time: 3 ms", L""}},
        {L"10.0.0.3", {L"Destination host unreachable.", L"", L""}},
    };
    Open();
    for (auto &c : cases) {   // each clears the lines the one before filled
        SetDlgItemTextW(dialog_, IDC_PING_HOST, c.host);
        Command(IDC_PING_GO);   // the echo waits for the timer, after "Pinging..." is shown
        EXPECT_EQ((Texts{L"Pinging...", L"", L""}), Shows({IDC_PING_STATUS, IDC_PING_TIME, IDC_PING_MAC})) << c.host;
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_PING_GO)));
        SendMessageW(dialog_, WM_TIMER, PING_TIMER_ID, 0);
        EXPECT_EQ(c.shown, Shows({IDC_PING_STATUS, IDC_PING_TIME, IDC_PING_MAC})) << c.host;
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_PING_GO)));
    }
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);   // a ping lowers the panel the focus raised
    // Address literals are never looked up; every echo went out as the scan's do.
    EXPECT_TRUE(fake::g_lan.lookedUp.empty());
    ASSERT_EQ(4u, fake::g_lan.echoes.size());
    for (const fake::Echo &e : fake::g_lan.echoes)
        EXPECT_TRUE(e.requestAsSent && e.timeout == 5000u);
    EXPECT_EQ(0, fake::g_lan.icmpOpen + fake::g_lan.wsaBalance + fake::g_lan.liveBlocks);
    Open();   // the last host pinged comes back
    EXPECT_EQ(Texts{L"10.0.0.3"}, Shows({IDC_PING_HOST}));

    // No ping service; no host at all.
    fake::g_lan.noIcmp = true;
    Press(L"10.0.0.1");
    EXPECT_EQ(Texts{L"Error: No ping service"}, Shows({IDC_PING_STATUS}));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    Press(L"");
    EXPECT_EQ(L"Host name is empty|Error", Box(0));
}

} // namespace
