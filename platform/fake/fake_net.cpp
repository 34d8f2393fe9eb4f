// fake_net.cpp: a DHCP client, time zone, connection manager and echo servers that do what the test says.
#include "platform/fake/fake_net.h"

#include <string.h>

namespace fake {

Net g_net;

namespace {

// Internet handles are numbers into this table, from 1.
struct InternetHandle {
    const char *kind;
    size_t request;     // index into g_net.requests
    size_t read;        // bytes of the body already read
    bool open;
};
std::vector<InternetHandle> g_handles;
const ConnWait *g_lastWait;
HANDLE const kConnection = reinterpret_cast<HANDLE>(0xC0DE);

HINTERNET NewHandle(const char *kind, size_t request)
{
    InternetHandle h = {kind, request, 0, true};
    g_handles.push_back(h);
    g_net.handlesOpen++;
    return reinterpret_cast<HINTERNET>(g_handles.size());
}

InternetHandle *Handle(HINTERNET handle, const char *kind)
{
    size_t i = reinterpret_cast<size_t>(handle);
    if (i == 0 || i > g_handles.size() || !g_handles[i - 1].open)
        return nullptr;
    InternetHandle *h = &g_handles[i - 1];
    return kind && strcmp(h->kind, kind) != 0 ? nullptr : h;
}

const EchoServer *Server(const std::wstring &host)
{
    for (size_t i = 0; i < g_net.servers.size(); i++)
        if (g_net.servers[i].host == host)
            return &g_net.servers[i];
    return nullptr;
}

void CopyAddress(IP_ADDR_STRING &to, const std::string &from)
{
    lstrcpynA(to.IpAddress.String, from.c_str(), sizeof to.IpAddress.String);
}

} // namespace

void ResetNet()
{
    g_net = Net();
    g_net.proxyResult = E_NOINTERFACE;
    g_handles.clear();
    g_lastWait = nullptr;
}

void AddEchoServer(const std::wstring &host, const std::string &body, DWORD chunk)
{
    EchoServer s = {host, false, body, chunk};
    g_net.servers.push_back(s);
}

void FillAddressing(const Adapter &a, IP_ADAPTER_INFO &r)
{
    lstrcpynA(r.Description, a.description ? a.description : a.name.c_str(), sizeof r.Description);
    r.AddressLength = (UINT)a.mac.size();
    for (size_t i = 0; i < a.mac.size() && i < sizeof r.Address; i++)
        r.Address[i] = a.mac[i];
    r.DhcpEnabled = !a.dhcpOff;
    CopyAddress(r.IpAddressList, a.ip);
    lstrcpynA(r.IpAddressList.IpMask.String, a.mask.c_str(), sizeof r.IpAddressList.IpMask.String);
    r.CurrentIpAddress = &r.IpAddressList;
    CopyAddress(r.GatewayList, a.gateway);
    CopyAddress(r.DhcpServer, a.dhcpServer);
    r.LeaseObtained = a.leaseObtained;
    r.LeaseExpires = a.leaseExpires;
    r.HaveWins = a.haveWins;
    CopyAddress(r.PrimaryWinsServer, a.wins1);
    CopyAddress(r.SecondaryWinsServer, a.wins2);
}

} // namespace fake

using fake::g_net;

namespace platform {

DWORD GetPerAdapterInfo(ULONG index, PIP_PER_ADAPTER_INFO info, PULONG size)
{
    if (g_net.perAdapterFails)
        return ERROR_NOT_SUPPORTED;
    const fake::Adapter *adapter = nullptr;
    for (size_t i = 0; i < fake::g_device.adapters.size(); i++)
        if (fake::g_device.adapters[i].index == index)
            adapter = &fake::g_device.adapters[i];
    if (!adapter)
        return ERROR_NO_DATA;
    // The record, then the further list entries after it.
    size_t extra = adapter->dns.size() > 1 ? adapter->dns.size() - 1 : 0;
    ULONG need = (ULONG)(sizeof(IP_PER_ADAPTER_INFO) + extra * sizeof(IP_ADDR_STRING));
    if (!info || *size < need) {
        *size = need;
        return ERROR_BUFFER_OVERFLOW;
    }
    memset(info, 0, need);
    IP_ADDR_STRING *more = reinterpret_cast<IP_ADDR_STRING *>(info + 1);
    IP_ADDR_STRING *entry = &info->DnsServerList;
    for (size_t i = 0; i < adapter->dns.size(); i++) {
        if (i > 0) {
            entry->Next = &more[i - 1];
            entry = entry->Next;
        }
        fake::CopyAddress(*entry, adapter->dns[i]);
    }
    return NO_ERROR;
}

DWORD IpReleaseAddress(PIP_ADAPTER_INDEX_MAP adapter)
{
    g_net.released.push_back(*adapter);
    return g_net.releaseResult;
}

DWORD IpRenewAddress(PIP_ADAPTER_INDEX_MAP adapter)
{
    g_net.renewed.push_back(*adapter);
    return g_net.renewResult;
}

DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION *zone)
{
    memset(zone, 0, sizeof *zone);
    if (g_net.zoneInvalid)
        return TIME_ZONE_ID_INVALID;
    zone->Bias = g_net.bias;
    zone->DaylightBias = -60;   // never applied to lease times
    return TIME_ZONE_ID_STANDARD;
}

HRESULT ConnMgrEstablishConnection(CONNMGR_CONNECTIONINFO *, HANDLE *connection)
{
    g_net.establishments++;
    *connection = SUCCEEDED(g_net.establishResult) ? fake::kConnection : nullptr;
    fake::g_lastWait = nullptr;
    return g_net.establishResult;
}

HRESULT ConnMgrConnectionStatus(HANDLE, DWORD *status)
{
    *status = fake::g_lastWait ? fake::g_lastWait->status : CONNMGR_STATUS_CONNECTED;
    return g_net.statusResult;
}

HRESULT ConnMgrReleaseConnection(HANDLE, LONG cache)
{
    g_net.releases.push_back(cache);
    return S_OK;
}

HRESULT ConnMgrProviderMessage(HANDLE, const GUID *, DWORD *, DWORD, DWORD, PBYTE params, ULONG size)
{
    if (g_net.proxyResult == S_OK && size >= sizeof(PROXY_CONFIG))
        lstrcpynW(reinterpret_cast<PROXY_CONFIG *>(params)->szProxyServer, g_net.proxy.c_str(),
                  CMPROXY_PROXYSERVER_MAXSIZE);
    return g_net.proxyResult;
}

DWORD WaitForSingleObject(HANDLE, DWORD milliseconds)
{
    g_net.waitTimeouts.push_back(milliseconds);
    static const fake::ConnWait kConnected = {WAIT_OBJECT_0, 0, 0, CONNMGR_STATUS_CONNECTED};
    size_t n = g_net.waitTimeouts.size() - 1;
    fake::g_lastWait = n < g_net.waits.size() ? &g_net.waits[n] : &kConnected;
    fake::g_device.tickCount += fake::g_lastWait->elapsed;
    return fake::g_lastWait->result;
}

DWORD GetLastError()
{
    return fake::g_lastWait ? fake::g_lastWait->lastError : 0;
}

HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR proxy, LPCWSTR, DWORD)
{
    fake::HttpRequest r = fake::HttpRequest();
    r.agent = agent ? agent : L"";
    r.accessType = accessType;
    r.proxy = proxy ? proxy : L"";
    g_net.requests.push_back(r);
    return fake::NewHandle("session", g_net.requests.size() - 1);
}

HINTERNET InternetConnectW(HINTERNET session, LPCWSTR host, INTERNET_PORT port, LPCWSTR, LPCWSTR, DWORD service,
                           DWORD flags, DWORD)
{
    fake::InternetHandle *s = fake::Handle(session, "session");
    if (!s)
        return nullptr;
    fake::HttpRequest &r = g_net.requests[s->request];
    r.host = host ? host : L"";
    r.port = port;
    r.service = service;
    r.openFlags = flags;
    return fake::NewHandle("connection", s->request);
}

HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version, LPCWSTR,
                           LPCWSTR *, DWORD flags, DWORD context)
{
    fake::InternetHandle *c = fake::Handle(connection, "connection");
    if (!c)
        return nullptr;
    fake::HttpRequest &r = g_net.requests[c->request];
    r.verb = verb ? verb : L"(none)";
    r.object = object ? object : L"";
    r.version = version ? version : L"(none)";
    r.requestFlags = flags;
    r.context = context;
    return fake::NewHandle("request", c->request);
}

BOOL HttpSendRequestW(HINTERNET request, LPCWSTR, DWORD, LPVOID, DWORD)
{
    fake::InternetHandle *h = fake::Handle(request, "request");
    if (!h)
        return FALSE;
    const fake::EchoServer *server = fake::Server(g_net.requests[h->request].host);
    if (!server || server->down)
        return FALSE;
    g_net.requests[h->request].sent = true;
    return TRUE;
}

BOOL InternetReadFile(HINTERNET file, LPVOID buffer, DWORD toRead, LPDWORD read)
{
    *read = 0;
    fake::InternetHandle *h = fake::Handle(file, "request");
    if (!h || !g_net.requests[h->request].sent)
        return FALSE;
    const fake::EchoServer *server = fake::Server(g_net.requests[h->request].host);
    if (!server)
        return FALSE;
    size_t left = server->body.size() - h->read;
    size_t n = left < toRead ? left : toRead;
    if (server->chunk && n > server->chunk)
        n = server->chunk;
    memcpy(buffer, server->body.data() + h->read, n);
    h->read += n;
    *read = (DWORD)n;
    return TRUE;
}

BOOL InternetCloseHandle(HINTERNET handle)
{
    fake::InternetHandle *h = fake::Handle(handle, nullptr);
    if (!h)
        return FALSE;
    h->open = false;
    g_net.handlesOpen--;
    g_net.closed.push_back(h->kind);
    return TRUE;
}

} // namespace platform
