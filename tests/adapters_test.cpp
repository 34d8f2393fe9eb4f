// adapters_test.cpp: adapter details, the DHCP dialog, the echo body rule and the public-IP request on the fake device.
#include "adapters/adapters.h"
#include "adapters/ipbody.h"
#include "platform/fake/fake_net.h"
#include "resources/resource.h"
#include "tests/support.h"

namespace {

using fake::g_net;

TEST(PublicIpBody, TheBodyRule)
{
    const std::string tooLong(10000, '1');
    const struct { std::string body; bool found; const char *address; } cases[] = {
        {"203.0.113.7\r\n", true, "203.0.113.7"}, {"203.0.113.7\nmore", true, "203.0.113.7"},
        {"111.222.111.222.1234", true, "111.222.111.222.1234"}, {"203.0.113.7\r\n12345678", false, ""},
        {"203.0.113.7 ", false, "203.0.113.7 "}, {"", false, ""}, {tooLong, false, ""},
        {"....", true, "...."},   // the form is not checked
        // A zero byte ends the text, even the first: an answer.
        {std::string("\0junk", 5), true, ""}, {std::string("1.2.3.4\0", 8) + tooLong, true, "1.2.3.4"},
    };
    for (const auto &c : cases) {
        char address[PUBLIC_IP_MAX_TEXT + 1] = "x";
        EXPECT_EQ(c.found, ParsePublicIpBody(c.body.data(), c.body.size(), address)) << c.body.substr(0, 30);
        EXPECT_STREQ(c.address, address) << c.body.substr(0, 30);
    }
}

// A typical cradle adapter: every line of the dialogs filled.
fake::Adapter Cradle(const char *name = "{CRADLE}", DWORD index = 7)
{
    return fake::Adapter{name, L"", MIB_IF_TYPE_ETHERNET, index, 0, 0, "USB Cradle", {0x00, 0x0A, 0x1B, 0x2C, 0x3D, 0x4E},
                         "192.168.55.101", "255.255.255.0", "192.168.55.1", "192.168.55.1", false, 1142409909,
                         1142409909 + 86400, true, "192.168.55.4", "192.168.55.5", 0, 11000000,
                         {"192.168.55.2", "192.168.55.3"}};
}

class AdaptersTest : public DeviceTest {
protected:
    void TearDown() override { DestroyWindow(dialog_); DeviceTest::TearDown(); }
    void Open(int id)
    {
        DestroyWindow(dialog_);
        dialog_ = CreateFromTemplate(id, id == IDD_DHCP ? DhcpDlgProc : AdapterDetailsDlgProc);
    }
    Texts Shows(std::initializer_list<int> ids) { return ControlTexts(dialog_, ids); }
    void Command(int id) { SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    std::wstring Box(size_t i) { auto &b = fake::g_device.messageBoxes.at(i); return b.text + L"|" + b.caption; }
    HWND dialog_ = nullptr;
};

TEST_F(AdaptersTest, AdapterDetailsOfTheFirstEthernetAdapterInPortraitAndLandscapeAndItsIndex)
{
    // Portrait: no hardware address (the line repeats the IP address, kept so), no description,
    // a type without a name, one DNS server.
    fake::g_device.adapters = {Cradle()};
    fake::Adapter &a = fake::g_device.adapters[0];
    a.speed = 999999;
    a.mac.clear();
    a.ifType = 71;
    a.description = "";
    a.dns.resize(1);
    Open(IDD_ADAPTER);
    EXPECT_EQ((Texts{L"Adapter - {CRADLE}", L"192.168.55.101", L"", L"999999 bps", L"192.168.55.101", L"255.255.255.0",
                     L"192.168.55.1", L"192.168.55.2", L"", L"192.168.55.4", L"192.168.55.5"}),
              Shows({IDC_ADAPTER_TITLE, IDC_ADAPTER_MAC, IDC_ADAPTER_TYPE, IDC_ADAPTER_SPEED, IDC_ADAPTER_IP,
                     IDC_ADAPTER_MASK, IDC_ADAPTER_GATEWAY, IDC_ADAPTER_DNS1, IDC_ADAPTER_DNS2, IDC_ADAPTER_WINS1,
                     IDC_ADAPTER_WINS2}));

    // The first Ethernet adapter is shown and becomes the monitored one.
    fake::Adapter ppp = Cradle("{PPP}");
    ppp.type = MIB_IF_TYPE_PPP;
    fake::g_device.adapters = {ppp, Cradle(), Cradle("{SECOND}")};
    lstrcpyW(g_item.adapterName, L"{SECOND}");   // as the options chose
    Open(IDD_ADAPTER);
    EXPECT_STREQ(L"{CRADLE}", g_item.adapterName);
    // None of Ethernet type: every line blank, the title too, no message.
    fake::g_device.adapters = {ppp};
    Open(IDD_ADAPTER);
    EXPECT_EQ(Texts(2), Shows({IDC_ADAPTER_TITLE, IDC_ADAPTER_IP}));

    // No adapter named yet: one is chosen and stored, or none is available.
    DeleteItemKey();
    g_item.adapterName[0] = 0;
    fake::g_device.adapters.clear();
    Open(IDD_ADAPTER);
    EXPECT_EQ(Texts{L"No adapter is available."}, Shows({IDC_ADAPTER_TITLE}));
    WCHAR stored[128] = L"";
    EXPECT_FALSE(ReadSettingString(L"Adapter", stored, sizeof stored));
    fake::g_device.adapters = {Cradle()};
    Open(IDD_ADAPTER);
    ASSERT_TRUE(ReadSettingString(L"Adapter", stored, sizeof stored));
    EXPECT_STREQ(L"{CRADLE}", stored);

    // The interface index of release and renew: by the exact name, kept.
    fake::g_device.adapters = {Cradle("{A}", 3), Cradle("{B}", 9)};
    EXPECT_EQ(9u, FindInterfaceIndex(L"{B}"));
    EXPECT_TRUE(FindInterfaceIndex(L"{b}") == UNKNOWN_INTERFACE && FindInterfaceIndex(L"{B") == UNKNOWN_INTERFACE);

    // Landscape: one server alone, two on one line.
    fake::SetScreen(320, 240);
    fake::g_device.adapters = {Cradle()};
    fake::g_device.adapters[0].dns.resize(1);
    fake::g_device.adapters[0].speed = 1000000;
    Open(IDD_ADAPTER_WIDE);
    EXPECT_EQ((Texts{L"Adapter - USB Cradle", L"00:0A:1B:2C:3D:4E", L"ethernet", L"1 Mbps", L"192.168.55.2",
                     L"192.168.55.4, 192.168.55.5"}),
              Shows({IDC_ADAPTER_TITLE, IDC_ADAPTER_MAC, IDC_ADAPTER_TYPE, IDC_ADAPTER_SPEED, IDC_ADAPTER_DNS1,
                     IDC_ADAPTER_WINS1}));
}

TEST_F(AdaptersTest, LeaseTimesReleaseRenewDetectAndTheLastDhcpAdapter)
{
    const struct { DWORD obtained; LONG bias; bool zoneInvalid; const wchar_t *shown; } cases[] = {
        {0, -60, false, L"Thu. Jan 1, 1970 01:00:00"},
        {0, 300, false, L"Sun. Feb 7, 2106 01:28:16"},   // west of Greenwich near 1970 wraps
        {0, 300, true, L"Thu. Jan 1, 1970 00:00:00"},    // no zone: no bias
        {1142409909, 0, false, L"Wed. Mar 15, 2006 08:05:09"},
    };
    for (const auto &c : cases) {
        fake::g_device.adapters = {Cradle()};
        fake::g_device.adapters[0].leaseObtained = c.obtained;
        g_net.bias = c.bias;
        g_net.zoneInvalid = c.zoneInvalid;
        Open(IDD_DHCP);
        EXPECT_EQ(Texts{c.shown}, Shows({IDC_DHCP_OBTAINED})) << c.obtained << " " << c.bias;
    }
    EXPECT_EQ((Texts{L"DHCP Information", L"192.168.55.1", L"Thu. Mar 16, 2006 08:05:09"}),
              Shows({IDC_DHCP_TITLE, IDC_DHCP_SERVER, IDC_DHCP_EXPIRES}));

    const std::initializer_list<int> values = {IDC_DHCP_IP, IDC_DHCP_SERVER, IDC_DHCP_OBTAINED, IDC_DHCP_EXPIRES};
    // Detect asks the second server only when the first one's body fails.
    fake::AddEchoServer(L"api.ipify.org", "203.0.113.7 ");
    fake::AddEchoServer(L"checkip.amazonaws.com", "198.51.100.9\n");
    Command(IDC_DHCP_DETECT);
    EXPECT_EQ(L"checkip.amazonaws.com", g_net.requests.at(1).host);
    const Texts filled = Shows(values);
    g_net.releaseResult = ERROR_NOT_SUPPORTED;   // a failed release says so and changes nothing
    Command(IDC_DHCP_RELEASE);
    EXPECT_EQ(filled, Shows(values));
    // Release clears the four value lines; the title and the real IP stay.
    g_net.releaseResult = NO_ERROR;
    Command(IDC_DHCP_RELEASE);
    EXPECT_TRUE(g_net.released.at(1).Index == 7 && !lstrcmpW(L"{CRADLE}", g_net.released[1].Name));
    EXPECT_EQ(Texts(4), Shows(values));
    EXPECT_EQ((Texts{L"DHCP Information", L"198.51.100.9"}), Shows({IDC_DHCP_TITLE, IDC_DHCP_REAL_IP}));
    // Renew tells the user, then fills every line again.
    Command(IDC_DHCP_RENEW);
    EXPECT_EQ(filled, Shows(values));
    g_net.renewResult = ERROR_NOT_SUPPORTED;
    Command(IDC_DHCP_RENEW);
    EXPECT_EQ(L"Release DHCP Address Error!|Error", Box(0));
    EXPECT_EQ(L"DHCP IP address renewed. Please wait a few seconds to take it effect.|Infomation", Box(1));
    EXPECT_EQ(L"Renew DHCP Address Error!|Error", Box(2));
    // An adapter the interface table does not know: nothing happens.
    lstrcpyW(g_item.adapterName, L"{GONE}");
    Command(IDC_DHCP_RELEASE);
    Command(IDC_DHCP_RENEW);
    EXPECT_EQ(4u, g_net.released.size() + g_net.renewed.size());
    EXPECT_EQ(3u, fake::g_device.messageBoxes.size());

    // The last adapter with DHCP is shown and becomes the monitored one; no address yet: no lease lines.
    fake::Adapter off = Cradle("{OFF}"), last = Cradle("{LAST}");
    off.dhcpOff = true;
    last.ip = "0.0.0.0";
    fake::g_device.adapters = {Cradle(), last, off};
    Open(IDD_DHCP);
    EXPECT_EQ((Texts{L"0.0.0.0", L"192.168.55.1", L""}), Shows({IDC_DHCP_IP, IDC_DHCP_SERVER, IDC_DHCP_OBTAINED}));
    EXPECT_STREQ(L"{LAST}", g_item.adapterName);
    // None with DHCP: release and renew are off.
    fake::g_device.adapters = {off};
    Open(IDD_DHCP);
    EXPECT_EQ(Texts{L"DHCP is not enabled."}, Shows({IDC_DHCP_TITLE}));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RELEASE)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RENEW)));
}

TEST_F(AdaptersTest, TheRequestItsHandlesAndTheConnectionManager)
{
    // A body in 3-byte reads; handles closed request first, the manager's connection released.
    fake::AddEchoServer(L"echo.test", "203.0.113.77\r\n", 3);
    WCHAR address[PUBLIC_IP_TEXT_SIZE];
    ASSERT_TRUE(DetectPublicIp(L"echo.test", L"ip/ip.php", address));
    EXPECT_STREQ(L"203.0.113.77", address);
    EXPECT_EQ((DWORD)INTERNET_FLAG_RELOAD, g_net.requests.at(0).requestFlags);
    EXPECT_EQ((std::vector<std::string>{"request", "connection", "session"}), g_net.closed);
    EXPECT_EQ(std::vector<LONG>{1}, g_net.releases);
    // A body that fills the 10,000-byte buffer is read to its end and fails.
    fake::ResetNet();
    fake::AddEchoServer(L"echo.test", std::string(12000, '7'), 4096);
    EXPECT_FALSE(DetectPublicIp(L"echo.test", L"ip/ip.php", address));
    EXPECT_EQ(0, g_net.handlesOpen);

    // The connection manager: how long each wait may take; the request goes whatever it said,
    // through the proxy only when connected with one.
    const DWORD kWaiting = 0x40;
    const struct { std::vector<fake::ConnWait> waits; HRESULT proxyResult, result; std::vector<DWORD> timeouts; } cases[] = {
        {{}, S_OK, S_OK, {12000}},                                        // through a proxy
        {{{WAIT_OBJECT_0, 5000, 0, kWaiting}, {WAIT_OBJECT_0, 1000, 0, 0x10}}, E_NOINTERFACE, S_OK, {12000, 7000}},
        {{{WAIT_TIMEOUT, 100, 0, 0}}, S_OK, E_FAIL, {12000}},             // a time-out, whatever the clock says
        {{{WAIT_OBJECT_0, 12000, 0, kWaiting}}, S_OK, E_FAIL, {12000}},   // the clock runs out
        {{}, E_NOTIMPL, E_NOTIMPL, {}},                                   // no manager (a desktop)
    };
    for (const auto &c : cases) {
        for (bool whole : {false, true}) {
            fake::ResetNet();
            g_net.waits = c.waits;
            g_net.proxyResult = c.proxyResult;
            g_net.proxy = L"proxy.test:8080";
            g_net.establishResult = c.result == E_NOTIMPL ? E_NOTIMPL : S_OK;
            fake::AddEchoServer(L"echo.test", "203.0.113.7");
            WCHAR proxy[CMPROXY_PROXYSERVER_MAXSIZE] = L"";
            DWORD accessType = INTERNET_OPEN_TYPE_DIRECT;
            HANDLE connection = nullptr;
            if (whole)
                EXPECT_TRUE(DetectPublicIp(L"echo.test", L"/", address));
            else
                EXPECT_EQ(c.result, EstablishInternetConnection(proxy, &accessType, &connection));
            EXPECT_EQ(c.timeouts, g_net.waitTimeouts) << c.result;
            // Released once: at the failure, or after the request.
            EXPECT_EQ(c.result == E_NOTIMPL || (c.result == S_OK && !whole) ? 0u : 1u, g_net.releases.size()) << c.result;
        }
        EXPECT_EQ(c.result == S_OK && c.proxyResult == S_OK ? L"proxy.test:8080" : L"", g_net.requests.at(0).proxy);
    }
}

} // namespace
