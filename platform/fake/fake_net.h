// fake_net.h: the fake device's DHCP client, time zone, connection manager and echo servers.
#pragma once

#include "platform/fake/fake.h"
#include "platform/inet.h"

#include <string>
#include <vector>

namespace fake {

// One outcome of a wait on the connection handle: what the wait returns, how
// long it took on the device's clock, the error behind a failed wait, and the
// status the connection manager reports afterwards.
struct ConnWait {
    DWORD result;
    DWORD elapsed;
    DWORD lastError;
    DWORD status;
};

// An echo server by host name: down (the request cannot be sent) or serving
// `body` in reads of at most `chunk` bytes (0: all at once).
struct EchoServer {
    std::wstring host;
    bool down;
    std::string body;
    DWORD chunk;
};

// A request as it went out.
struct HttpRequest {
    std::wstring agent, proxy, host, verb, object, version;
    DWORD accessType, service, openFlags, requestFlags, context;
    INTERNET_PORT port;
    bool sent;
};

struct Net {
    // IP helper and clock.
    bool perAdapterFails;           // GetPerAdapterInfo answers an error
    DWORD releaseResult, renewResult;
    std::vector<IP_ADAPTER_INDEX_MAP> released, renewed;
    bool zoneInvalid;               // GetTimeZoneInformation answers TIME_ZONE_ID_INVALID
    LONG bias;

    // Connection manager: established, it answers the waits in order (then
    // signalled and connected), and its proxy provider answers proxyResult.
    HRESULT establishResult;
    std::vector<ConnWait> waits;
    std::vector<DWORD> waitTimeouts;  // as asked, in order
    HRESULT statusResult;
    HRESULT proxyResult;
    std::wstring proxy;
    int establishments;
    std::vector<LONG> releases;       // the cache value of each release

    // Internet library.
    std::vector<EchoServer> servers;
    std::vector<HttpRequest> requests;
    std::vector<std::string> closed;  // "session", "connection", "request", in closing order
    int handlesOpen;
};

extern Net g_net;

// Connected without a proxy, every server unknown, nothing recorded (fake::Reset calls it).
void ResetNet();
void AddEchoServer(const std::wstring &host, const std::string &body, DWORD chunk = 0);
// Writes an adapter's addressing into its GetAdaptersInfo record.
void FillAddressing(const Adapter &adapter, IP_ADAPTER_INFO &record);

} // namespace fake
