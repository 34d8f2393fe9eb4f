// adapters_test.cpp: adapter details, the DHCP dialog, the echo body rule and the public-IP request on the fake device.
#include "adapters/adapters.h"
#include "adapters/ipbody.h"
#include "platform/fake/fake_net.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <algorithm>

namespace {

using fake::g_net;

TEST(PublicIpBody, TheBodyRule)
{
    const std::string tooLong(10000, '1');
    struct {
        const char *what;
        std::string body;
        bool found;
        const char *address;
    } cases[] = {
        {"CR LF after the address", "203.0.113.7\r\n", true, "203.0.113.7"},
        {"LF alone", "203.0.113.7\nmore", true, "203.0.113.7"},
        {"no line end", "203.0.113.7", true, "203.0.113.7"},
        {"20 characters", "111.222.111.222.1234", true, "111.222.111.222.1234"},
        {"21 characters, an address first", "203.0.113.7\r\n12345678", false, ""},
        {"a trailing blank", "203.0.113.7 ", false, "203.0.113.7 "},
        {"an empty body", "", false, ""},
        {"a first byte of zero", std::string("\0junk", 5), true, ""},
        {"the text ends at a zero byte", std::string("1.2.3.4\0", 8) + tooLong, true, "1.2.3.4"},
        {"a 10,000-byte body", tooLong, false, ""},
        {"the form is not checked", "....", true, "...."},
        {"an error page", "<h1>404</h1>", false, "<h1>404</h1>"},
    };
    for (const auto &c : cases) {
        char address[PUBLIC_IP_MAX_TEXT + 1] = "x";
        EXPECT_EQ(c.found, ParsePublicIpBody(c.body.data(), c.body.size(), address)) << c.what;
        EXPECT_STREQ(c.address, address) << c.what;
    }
}

class AdaptersTest : public DeviceTest {
protected:
    void TearDown() override
    {
        DestroyWindow(dialog_);
        DeviceTest::TearDown();
    }
    static fake::Adapter Ethernet(const char *name, DWORD index)
    {
        fake::Adapter a = fake::Adapter();
        a.name = name;
        a.type = MIB_IF_TYPE_ETHERNET;
        a.index = index;
        return a;
    }
    void Open(int id, DLGPROC proc)
    {
        DestroyWindow(dialog_);
        dialog_ = CreateFromTemplate(id, proc);
    }
    std::wstring Text(int id)
    {
        WCHAR text[128] = L"";
        GetDlgItemTextW(dialog_, id, text, 128);
        return text;
    }
    void Command(int id) { SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    std::wstring Detect()
    {
        Command(IDC_DHCP_DETECT);
        return Text(IDC_DHCP_REAL_IP);
    }
    std::vector<std::wstring> HostsAsked()
    {
        std::vector<std::wstring> hosts;
        for (const fake::HttpRequest &r : g_net.requests)
            hosts.push_back(r.host);
        return hosts;
    }

    HWND dialog_ = nullptr;
};

// A typical cradle adapter: every line of the dialog filled.
fake::Adapter Cradle()
{
    fake::Adapter a = fake::Adapter();
    a.name = "{CRADLE}";
    a.description = "USB Cradle";
    a.type = MIB_IF_TYPE_ETHERNET;
    a.index = 7;
    a.mac = {0x00, 0x0A, 0x1B, 0x2C, 0x3D, 0x4E};
    a.ip = "192.168.55.101";
    a.mask = "255.255.255.0";
    a.gateway = "192.168.55.1";
    a.speed = 11000000;
    a.dns = {"192.168.55.2", "192.168.55.3"};
    a.haveWins = true;
    a.wins1 = "192.168.55.4";
    a.wins2 = "192.168.55.5";
    return a;
}

TEST_F(AdaptersTest, AdapterDetailsPortraitAndLandscape)
{
    fake::g_device.adapters = {Cradle()};
    struct {
        int w, h, id;
        const wchar_t *dns1, *dns2, *wins1, *wins2;
    } cases[] = {
        {240, 320, IDD_ADAPTER, L"192.168.55.2", L"192.168.55.3", L"192.168.55.4", L"192.168.55.5"},
        {320, 240, IDD_ADAPTER_WIDE, L"192.168.55.2, 192.168.55.3", L"", L"192.168.55.4, 192.168.55.5", L""},
    };
    for (const auto &c : cases) {
        fake::SetScreen(c.w, c.h);
        Open(c.id, AdapterDetailsDlgProc);
        EXPECT_EQ(L"Adapter - USB Cradle", Text(IDC_ADAPTER_TITLE)) << c.id;
        EXPECT_EQ(L"00:0A:1B:2C:3D:4E", Text(IDC_ADAPTER_MAC)) << c.id;
        EXPECT_EQ(L"ethernet", Text(IDC_ADAPTER_TYPE)) << c.id;
        EXPECT_EQ(L"11 Mbps", Text(IDC_ADAPTER_SPEED)) << c.id;
        EXPECT_EQ(L"192.168.55.101", Text(IDC_ADAPTER_IP)) << c.id;
        EXPECT_EQ(L"255.255.255.0", Text(IDC_ADAPTER_MASK)) << c.id;
        EXPECT_EQ(L"192.168.55.1", Text(IDC_ADAPTER_GATEWAY)) << c.id;
        EXPECT_EQ(c.dns1, Text(IDC_ADAPTER_DNS1)) << c.id;
        EXPECT_EQ(c.dns2, Text(IDC_ADAPTER_DNS2)) << c.id;
        EXPECT_EQ(c.wins1, Text(IDC_ADAPTER_WINS1)) << c.id;
        EXPECT_EQ(c.wins2, Text(IDC_ADAPTER_WINS2)) << c.id;
    }
}

TEST_F(AdaptersTest, AdapterDetailsEdgeCases)
{
    struct {
        const char *what;
        void (*change)(fake::Adapter &);
        int control;
        const wchar_t *shown;
    } cases[] = {
        {"speed 1,000,000", [](fake::Adapter &a) { a.speed = 1000000; }, IDC_ADAPTER_SPEED, L"1 Mbps"},
        {"speed 999,999", [](fake::Adapter &a) { a.speed = 999999; }, IDC_ADAPTER_SPEED, L"999999 bps"},
        {"speed 54,999,999", [](fake::Adapter &a) { a.speed = 54999999; }, IDC_ADAPTER_SPEED, L"54 Mbps"},
        {"a 1-byte MAC", [](fake::Adapter &a) { a.mac = {0xAB}; }, IDC_ADAPTER_MAC, L"AB"},
        {"no MAC repeats the address", [](fake::Adapter &a) { a.mac.clear(); }, IDC_ADAPTER_MAC, L"192.168.55.101"},
        {"interface type 71", [](fake::Adapter &a) { a.ifType = 71; }, IDC_ADAPTER_TYPE, L""},
        {"interface type 23", [](fake::Adapter &a) { a.ifType = 23; }, IDC_ADAPTER_TYPE, L"ppp"},
        {"no description", [](fake::Adapter &a) { a.description = ""; }, IDC_ADAPTER_TITLE, L"Adapter - {CRADLE}"},
        {"no WINS", [](fake::Adapter &a) { a.haveWins = false; }, IDC_ADAPTER_WINS1, L"N/A"},
        {"no WINS, second line", [](fake::Adapter &a) { a.haveWins = false; }, IDC_ADAPTER_WINS2, L""},
        {"one DNS server", [](fake::Adapter &a) { a.dns.resize(1); }, IDC_ADAPTER_DNS2, L""},
    };
    for (const auto &c : cases) {
        fake::Adapter a = Cradle();
        c.change(a);
        fake::g_device.adapters = {a};
        Open(IDD_ADAPTER, AdapterDetailsDlgProc);
        EXPECT_EQ(c.shown, Text(c.control)) << c.what;
    }

    // Landscape, one DNS server and an empty second WINS server: no comma.
    fake::Adapter a = Cradle();
    a.dns.resize(1);
    a.wins2 = "";
    fake::g_device.adapters = {a};
    fake::SetScreen(320, 240);
    Open(IDD_ADAPTER_WIDE, AdapterDetailsDlgProc);
    EXPECT_EQ(L"192.168.55.2", Text(IDC_ADAPTER_DNS1));
    EXPECT_EQ(L"192.168.55.4", Text(IDC_ADAPTER_WINS1));
}

TEST_F(AdaptersTest, TheFirstEthernetAdapterIsShownAndBecomesTheMonitoredOne)
{
    fake::Adapter ppp = Cradle(), second = Cradle();
    ppp.name = "{PPP}";
    ppp.type = MIB_IF_TYPE_PPP;
    second.name = "{SECOND}";
    second.description = "Second";
    fake::g_device.adapters = {ppp, Cradle(), second};
    lstrcpyW(g_item.adapterName, L"{SECOND}");   // as the options chose
    Open(IDD_ADAPTER, AdapterDetailsDlgProc);
    EXPECT_EQ(L"Adapter - USB Cradle", Text(IDC_ADAPTER_TITLE));
    EXPECT_STREQ(L"{CRADLE}", g_item.adapterName);

    // No Ethernet-type adapter: every line blank, the title too, no message.
    fake::g_device.adapters = {ppp};
    Open(IDD_ADAPTER, AdapterDetailsDlgProc);
    for (int id = IDC_ADAPTER_TITLE; id <= IDC_ADAPTER_WINS1; id++)
        EXPECT_EQ(L"", Text(id)) << id;
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
}

TEST_F(AdaptersTest, AnEmptyAdapterNameIsChosenAndStoredOrReportedMissing)
{
    DeleteItemKey();
    g_item.adapterName[0] = 0;
    Open(IDD_ADAPTER, AdapterDetailsDlgProc);
    EXPECT_EQ(L"No adapter is available.", Text(IDC_ADAPTER_TITLE));
    EXPECT_EQ(L"", Text(IDC_ADAPTER_MAC));
    WCHAR stored[128] = L"";
    EXPECT_FALSE(ReadSettingString(L"Adapter", stored, sizeof stored));

    fake::g_device.adapters = {Cradle()};
    Open(IDD_ADAPTER, AdapterDetailsDlgProc);
    EXPECT_EQ(L"Adapter - USB Cradle", Text(IDC_ADAPTER_TITLE));
    ASSERT_TRUE(ReadSettingString(L"Adapter", stored, sizeof stored));
    EXPECT_STREQ(L"{CRADLE}", stored);
}

TEST_F(AdaptersTest, FindInterfaceIndexMatchesExactlyAndKeepsTheIndex)
{
    fake::Adapter a = Ethernet("{A}", 3), b = Ethernet("{B}", 9);
    fake::g_device.adapters = {a, b};
    EXPECT_EQ(9u, FindInterfaceIndex(L"{B}"));
    EXPECT_EQ(9u, g_item.interfaceIndex);
    EXPECT_EQ(UNKNOWN_INTERFACE, FindInterfaceIndex(L"{b}"));
    EXPECT_EQ(UNKNOWN_INTERFACE, FindInterfaceIndex(L"{B"));
    EXPECT_EQ(9u, g_item.interfaceIndex);
    fake::FailCall(fake::kGetInterfaceInfo, 2);
    EXPECT_EQ(UNKNOWN_INTERFACE, FindInterfaceIndex(L"{A}"));
}

TEST_F(AdaptersTest, BothDialogsPlaceThemselvesAlike)
{
    fake::g_device.adapters = {Cradle()};
    for (int id : {IDD_ADAPTER, IDD_DHCP}) {
        SIZE natural = TemplateSize(id);
        Open(id, id == IDD_DHCP ? DhcpDlgProc : AdapterDetailsDlgProc);
        RECT rc;
        GetWindowRect(dialog_, &rc);
        EXPECT_EQ(natural.cx + 1, rc.right - rc.left) << id;
        EXPECT_EQ(natural.cy + 1, rc.bottom - rc.top) << id;
        EXPECT_EQ((240 - natural.cx - 1) / 2, rc.left) << id;
        EXPECT_EQ(std::max((320 - (int)natural.cy - 1) / 2, 26), (int)rc.top) << id;
    }
    // The DHCP template fits a landscape screen under the taskbar.
    SIZE dhcp = TemplateSize(IDD_DHCP);
    EXPECT_LE(26 + dhcp.cy + 1, 240);
}

TEST_F(AdaptersTest, LeaseTimes)
{
    fake::Adapter a = Cradle();
    a.dhcpServer = "192.168.55.1";
    struct {
        const char *what;
        DWORD obtained;
        LONG bias;
        bool zoneInvalid;
        const wchar_t *shown;
    } cases[] = {
        {"Unix 0, one hour east", 0, -60, false, L"Thu. Jan 1, 1970 01:00:00"},
        {"Unix 0, five hours west wraps", 0, 300, false, L"Sun. Feb 7, 2106 01:28:16"},
        {"no zone: no bias", 0, 300, true, L"Thu. Jan 1, 1970 00:00:00"},
        {"an ordinary lease", 1142409909, 0, false, L"Wed. Mar 15, 2006 08:05:09"},
    };
    for (const auto &c : cases) {
        a.leaseObtained = c.obtained;
        a.leaseExpires = c.obtained + 86400;
        fake::g_device.adapters = {a};
        g_net.bias = c.bias;
        g_net.zoneInvalid = c.zoneInvalid;
        Open(IDD_DHCP, DhcpDlgProc);
        EXPECT_EQ(c.shown, Text(IDC_DHCP_OBTAINED)) << c.what;
    }
    EXPECT_EQ(L"Thu. Mar 16, 2006 08:05:09", Text(IDC_DHCP_EXPIRES));
    EXPECT_EQ(L"DHCP Information", Text(IDC_DHCP_TITLE));
    EXPECT_EQ(L"192.168.55.101", Text(IDC_DHCP_IP));
    EXPECT_EQ(L"192.168.55.1", Text(IDC_DHCP_SERVER));

    // No address yet: address and server shown, no lease lines.
    fake::g_device.adapters[0].ip = "0.0.0.0";
    Open(IDD_DHCP, DhcpDlgProc);
    EXPECT_EQ(L"0.0.0.0", Text(IDC_DHCP_IP));
    EXPECT_EQ(L"192.168.55.1", Text(IDC_DHCP_SERVER));
    EXPECT_EQ(L"", Text(IDC_DHCP_OBTAINED));
}

TEST_F(AdaptersTest, TheLastDhcpAdapterWinsAndBecomesTheMonitoredOne)
{
    fake::Adapter first = Cradle(), off = Cradle(), last = Cradle();
    first.name = "{FIRST}";
    off.name = "{OFF}";
    off.dhcpOff = true;
    last.name = "{LAST}";
    last.ip = "10.0.0.9";
    fake::g_device.adapters = {first, last, off};
    Open(IDD_DHCP, DhcpDlgProc);
    EXPECT_EQ(L"10.0.0.9", Text(IDC_DHCP_IP));
    EXPECT_STREQ(L"{LAST}", g_item.adapterName);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RELEASE)));

    // None with DHCP, or no interface at all: release and renew are off.
    for (bool noInterface : {false, true}) {
        first.dhcpOff = true;
        fake::g_device.adapters = {first};
        if (noInterface)
            fake::FailCall(fake::kGetNumberOfInterfaces, 1);
        Open(IDD_DHCP, DhcpDlgProc);
        EXPECT_EQ(noInterface ? L"" : L"DHCP is not enabled.", Text(IDC_DHCP_TITLE));
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RELEASE))) << noInterface;
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RENEW))) << noInterface;
    }
    // A failed size query leaves the fields empty and the buttons on.
    fake::g_device.adapters = {last};
    fake::FailCall(fake::kGetAdaptersInfo, 1);
    Open(IDD_DHCP, DhcpDlgProc);
    EXPECT_EQ(L"", Text(IDC_DHCP_TITLE));
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog_, IDC_DHCP_RENEW)));
}

TEST_F(AdaptersTest, ReleaseAndRenew)
{
    fake::Adapter a = Cradle();
    a.dhcpServer = "192.168.55.1";
    a.leaseObtained = 1142409909;
    a.leaseExpires = 1142409909 + 3600;
    fake::g_device.adapters = {a};
    fake::AddEchoServer(L"api.ipify.org", "203.0.113.7");
    Open(IDD_DHCP, DhcpDlgProc);
    ASSERT_EQ(L"203.0.113.7", Detect());

    // A failed release says so and changes nothing.
    g_net.releaseResult = ERROR_NOT_SUPPORTED;
    Command(IDC_DHCP_RELEASE);
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Release DHCP Address Error!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ(L"192.168.55.101", Text(IDC_DHCP_IP));

    // Release clears the four value lines; the title and the real IP stay.
    g_net.releaseResult = NO_ERROR;
    Command(IDC_DHCP_RELEASE);
    ASSERT_EQ(2u, g_net.released.size());
    EXPECT_EQ(7u, g_net.released[1].Index);
    EXPECT_STREQ(L"{CRADLE}", g_net.released[1].Name);
    for (int id : {IDC_DHCP_IP, IDC_DHCP_SERVER, IDC_DHCP_OBTAINED, IDC_DHCP_EXPIRES})
        EXPECT_EQ(L"", Text(id)) << id;
    EXPECT_EQ(L"DHCP Information", Text(IDC_DHCP_TITLE));
    EXPECT_EQ(L"203.0.113.7", Text(IDC_DHCP_REAL_IP));
    EXPECT_EQ(1u, fake::g_device.messageBoxes.size());

    // Renew tells the user, then fills every line again.
    Command(IDC_DHCP_RENEW);
    ASSERT_EQ(1u, g_net.renewed.size());
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"DHCP IP address renewed. Please wait a few seconds to take it effect.",
              fake::g_device.messageBoxes[1].text);
    EXPECT_EQ(L"Infomation", fake::g_device.messageBoxes[1].caption);
    EXPECT_EQ(L"192.168.55.101", Text(IDC_DHCP_IP));
    EXPECT_EQ(L"Wed. Mar 15, 2006 08:05:09", Text(IDC_DHCP_OBTAINED));

    g_net.renewResult = ERROR_NOT_SUPPORTED;
    Command(IDC_DHCP_RENEW);
    EXPECT_EQ(L"Renew DHCP Address Error!", fake::g_device.messageBoxes.back().text);

    // An adapter the interface table does not know: nothing happens.
    lstrcpyW(g_item.adapterName, L"{GONE}");
    Command(IDC_DHCP_RELEASE);
    Command(IDC_DHCP_RENEW);
    EXPECT_EQ(2u, g_net.released.size());
    EXPECT_EQ(2u, g_net.renewed.size());
    EXPECT_EQ(3u, fake::g_device.messageBoxes.size());
}

TEST_F(AdaptersTest, DetectAsksTheFallbackOnlyAfterAFailure)
{
    fake::g_device.adapters = {Cradle()};
    const bool up = true, down = false;
    struct {
        const char *what;
        std::string first;
        bool firstUp;
        std::string second;
        bool secondUp;
        const wchar_t *shown;
        size_t asked;
    } cases[] = {
        {"the first answers", "203.0.113.7\r\n", up, "198.51.100.9", up, L"203.0.113.7", 1},
        {"a first byte of zero is an answer", std::string(1, '\0'), up, "198.51.100.9", up, L"", 1},
        {"a trailing blank fails", "203.0.113.7 ", up, "198.51.100.9\n", up, L"198.51.100.9", 2},
        {"an empty body fails", "", up, "198.51.100.9", up, L"198.51.100.9", 2},
        {"the first is down", "", down, "198.51.100.9", up, L"198.51.100.9", 2},
        {"both fail: nothing of the failures shows", "1.2.3.4 x", up, "", down, L"", 2},
    };
    for (const auto &c : cases) {
        fake::ResetNet();
        fake::AddEchoServer(L"api.ipify.org", c.first);
        fake::AddEchoServer(L"checkip.amazonaws.com", c.second);
        g_net.servers[0].down = !c.firstUp;
        g_net.servers[1].down = !c.secondUp;
        Open(IDD_DHCP, DhcpDlgProc);
        SetDlgItemTextW(dialog_, IDC_DHCP_REAL_IP, L"old");
        EXPECT_EQ(c.shown, Detect()) << c.what;
        EXPECT_EQ(c.asked, g_net.requests.size()) << c.what;
    }
    EXPECT_EQ((std::vector<std::wstring>{L"api.ipify.org", L"checkip.amazonaws.com"}), HostsAsked());

    // The servers are settings of the item.
    fake::ResetNet();
    WriteSettingString(L"EchoHost1", L"echo1.test");
    WriteSettingString(L"EchoPath1", L"ip/ip.php");
    WriteSettingString(L"EchoHost2", L"echo2.test");
    fake::AddEchoServer(L"echo2.test", "203.0.113.8");
    EXPECT_EQ(L"203.0.113.8", Detect());
    ASSERT_EQ((std::vector<std::wstring>{L"echo1.test", L"echo2.test"}), HostsAsked());
    EXPECT_EQ(L"ip/ip.php", g_net.requests[0].object);
    EXPECT_EQ(L"/", g_net.requests[1].object);
}

TEST_F(AdaptersTest, TheRequestAndItsHandles)
{
    // A body in 3-byte reads; handles closed request first, the manager's connection released.
    fake::AddEchoServer(L"echo.test", "203.0.113.77\r\n", 3);
    WCHAR address[PUBLIC_IP_TEXT_SIZE];
    ASSERT_TRUE(DetectPublicIp(L"echo.test", L"ip/ip.php", address));
    EXPECT_STREQ(L"203.0.113.77", address);
    ASSERT_EQ(1u, g_net.requests.size());
    const fake::HttpRequest &r = g_net.requests[0];
    EXPECT_EQ(L"Microsoft Internet Explorer", r.agent);
    EXPECT_EQ((DWORD)INTERNET_OPEN_TYPE_DIRECT, r.accessType);
    EXPECT_EQ(L"", r.proxy);
    EXPECT_EQ(80, r.port);
    EXPECT_EQ((DWORD)INTERNET_SERVICE_HTTP, r.service);
    EXPECT_EQ(L"(none)", r.verb);
    EXPECT_EQ(L"(none)", r.version);
    EXPECT_EQ((DWORD)INTERNET_FLAG_RELOAD, r.requestFlags);
    EXPECT_EQ(1u, r.context);
    EXPECT_EQ((std::vector<std::string>{"request", "connection", "session"}), g_net.closed);
    EXPECT_EQ(0, g_net.handlesOpen);
    EXPECT_EQ(std::vector<LONG>{1}, g_net.releases);

    // A body that fills the 10,000-byte buffer is read to its end and fails.
    fake::ResetNet();
    fake::AddEchoServer(L"echo.test", std::string(12000, '7'), 4096);
    EXPECT_FALSE(DetectPublicIp(L"echo.test", L"ip/ip.php", address));
    EXPECT_EQ(0, g_net.handlesOpen);
}

TEST_F(AdaptersTest, TheConnectionManager)
{
    const DWORD kWaiting = 0x40, kFailed = 0x21;
    struct {
        const char *what;
        std::vector<fake::ConnWait> waits;
        HRESULT proxyResult;
        HRESULT result;
        DWORD accessType;             // as the request then goes out
        const wchar_t *proxy;
        std::vector<DWORD> timeouts;  // asked of each wait
        size_t releases;              // before the request
    } cases[] = {
        {"connected, no proxy", {}, E_NOINTERFACE, S_OK, INTERNET_OPEN_TYPE_DIRECT, L"", {12000}, 0},
        {"connected through a proxy", {}, S_OK, S_OK, INTERNET_OPEN_TYPE_PROXY, L"proxy.test:8080", {12000}, 0},
        {"on its way, then connected", {{WAIT_OBJECT_0, 5000, 0, kWaiting}, {WAIT_OBJECT_0, 1000, 0, 0x10}},
         E_NOINTERFACE, S_OK, INTERNET_OPEN_TYPE_DIRECT, L"", {12000, 7000}, 0},
        {"no connection in 12 s: the request still goes, directly", {{WAIT_TIMEOUT, 12000, 0, 0}}, S_OK, E_FAIL,
         INTERNET_OPEN_TYPE_DIRECT, L"", {12000}, 1},
        {"a time-out ends the wait, whatever the clock says", {{WAIT_TIMEOUT, 100, 0, 0}}, S_OK, E_FAIL,
         INTERNET_OPEN_TYPE_DIRECT, L"", {12000}, 1},
        {"the clock runs out", {{WAIT_OBJECT_0, 12000, 0, kWaiting}}, S_OK, E_FAIL, INTERNET_OPEN_TYPE_DIRECT, L"",
         {12000}, 1},
        {"a failed connection", {{WAIT_OBJECT_0, 10, 0, kFailed}}, S_OK, E_FAIL, INTERNET_OPEN_TYPE_DIRECT, L"",
         {12000}, 1},
        {"a failed wait", {{WAIT_FAILED, 10, ERROR_ACCESS_DENIED, 0}}, S_OK, (HRESULT)0x80070005,
         INTERNET_OPEN_TYPE_DIRECT, L"", {12000}, 1},
        {"a failed wait without an error waits on", {{WAIT_FAILED, 10, 0, 0}}, E_NOINTERFACE, S_OK,
         INTERNET_OPEN_TYPE_DIRECT, L"", {12000, 11990}, 0},
        {"the proxy provider fails", {}, E_ACCESSDENIED, E_ACCESSDENIED, INTERNET_OPEN_TYPE_DIRECT, L"", {12000}, 1},
    };
    for (const auto &c : cases) {
        fake::ResetNet();
        g_net.waits = c.waits;
        g_net.proxyResult = c.proxyResult;
        g_net.proxy = L"proxy.test:8080";
        WCHAR proxy[CMPROXY_PROXYSERVER_MAXSIZE] = L"";
        DWORD accessType = 12345;
        HANDLE connection = nullptr;
        EXPECT_EQ(c.result, EstablishInternetConnection(proxy, &accessType, &connection)) << c.what;
        EXPECT_EQ(c.timeouts, g_net.waitTimeouts) << c.what;
        EXPECT_EQ(c.releases, g_net.releases.size()) << c.what;
        EXPECT_EQ(c.result == S_OK, connection != nullptr) << c.what;

        // The whole detection: whatever the manager said, the request is made.
        fake::ResetNet();
        g_net.waits = c.waits;
        g_net.proxyResult = c.proxyResult;
        g_net.proxy = L"proxy.test:8080";
        fake::AddEchoServer(L"echo.test", "203.0.113.7");
        WCHAR address[PUBLIC_IP_TEXT_SIZE];
        EXPECT_TRUE(DetectPublicIp(L"echo.test", L"/", address)) << c.what;
        ASSERT_EQ(1u, g_net.requests.size()) << c.what;
        EXPECT_EQ(c.accessType, g_net.requests[0].accessType) << c.what;
        EXPECT_EQ(c.proxy, g_net.requests[0].proxy) << c.what;
        EXPECT_EQ(1u, g_net.releases.size()) << c.what;
    }

    // Without a manager (a desktop) nothing is waited for.
    fake::ResetNet();
    g_net.establishResult = E_NOTIMPL;
    WCHAR proxy[CMPROXY_PROXYSERVER_MAXSIZE] = L"";
    DWORD accessType = INTERNET_OPEN_TYPE_DIRECT;
    HANDLE connection = nullptr;
    EXPECT_EQ(E_NOTIMPL, EstablishInternetConnection(proxy, &accessType, &connection));
    EXPECT_TRUE(g_net.waitTimeouts.empty());
    EXPECT_TRUE(g_net.releases.empty());
}

} // namespace
