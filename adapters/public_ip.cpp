// public_ip.cpp: the public address as an echo server over HTTP sees it, through the connection manager.
#include "adapters/adapters.h"
#include "adapters/ipbody.h"
#include "item/item.h"
#include "platform/inet.h"
#include "platform/text.h"

#include <stdlib.h>
#include <string.h>

namespace {

#define CONNECT_WAIT_MS 12000
#define BODY_SIZE 10000

// Two services that answer a plain GET on port 80 with the bare address.
const LPCWSTR kDefaultHosts[2] = {L"api.ipify.org", L"checkip.amazonaws.com"};
const LPCWSTR kDefaultPaths[2] = {L"/", L"/"};

// Waiting ends at these: connected, no status yet, a failure (33 to 37) or the
// phone switched off (66); the others are on their way to one of them.
bool StatusEndsWait(DWORD status)
{
    return status == 0 || status == CONNMGR_STATUS_CONNECTED || (status >= 33 && status <= 37) || status == 66;
}

HRESULT Release(HANDLE connection, HRESULT result)
{
    platform::ConnMgrReleaseConnection(connection, 1);
    return result;
}

} // namespace

void ReadEchoServer(int which, LPWSTR host, LPWSTR path)
{
    int i = which == 2 ? 1 : 0;
    LPCWSTR hostName = i ? L"EchoHost2" : L"EchoHost1", pathName = i ? L"EchoPath2" : L"EchoPath1";
    if (!ReadSettingString(hostName, host, ECHO_HOST_SIZE * sizeof(WCHAR)))
        CopyText(host, kDefaultHosts[i], ECHO_HOST_SIZE);
    if (!ReadSettingString(pathName, path, ECHO_PATH_SIZE * sizeof(WCHAR)))
        CopyText(path, kDefaultPaths[i], ECHO_PATH_SIZE);
}

HRESULT EstablishInternetConnection(LPWSTR proxy, DWORD *accessType, HANDLE *connection)
{
    CONNMGR_CONNECTIONINFO request = CONNMGR_CONNECTIONINFO();
    request.cbSize = sizeof request;
    request.dwParams = CONNMGR_PARAM_GUIDDESTNET;
    request.dwFlags = CONNMGR_FLAG_PROXY_HTTP;
    request.dwPriority = CONNMGR_PRIORITY_USERBACKGROUND;
    request.guidDestNet = IID_DestNetInternet;
    HANDLE handle = nullptr;
    *connection = nullptr;
    HRESULT result = platform::ConnMgrEstablishConnection(&request, &handle);
    // Not asked for at all (a desktop has no manager): nothing to wait for.
    if (FAILED(result))
        return result;
    DWORD start = platform::GetTickCount();

    DWORD status = 0;
    for (;;) {
        DWORD elapsed = platform::GetTickCount() - start;
        if (elapsed >= CONNECT_WAIT_MS)
            break;
        DWORD waited = platform::WaitForSingleObject(handle, CONNECT_WAIT_MS - elapsed);
        if (waited == WAIT_OBJECT_0) {
            result = platform::ConnMgrConnectionStatus(handle, &status);
            if (FAILED(result))
                return Release(handle, result);
            if (StatusEndsWait(status))
                break;
        } else if (waited == WAIT_TIMEOUT) {
            return Release(handle, E_FAIL);
        } else if (waited == WAIT_FAILED) {
            LONG error = (LONG)platform::GetLastError();
            if (error > 0)
                return Release(handle, (HRESULT)(0x80070000u | ((DWORD)error & 0xFFFF)));
            if (error < 0)
                return Release(handle, (HRESULT)error);
        }
    }
    if (status != CONNMGR_STATUS_CONNECTED)
        return Release(handle, E_FAIL);

    PROXY_CONFIG config;
    memset(&config, 0, sizeof config);
    result = platform::ConnMgrProviderMessage(handle, &IID_ConnPrv_IProxyExtension, nullptr, 0, 0,
                                              reinterpret_cast<PBYTE>(&config), sizeof config);
    if (result == S_OK) {
        *accessType = INTERNET_OPEN_TYPE_PROXY;
        CopyText(proxy, config.szProxyServer, CMPROXY_PROXYSERVER_MAXSIZE);
    } else if (result == E_NOINTERFACE) {
        *accessType = INTERNET_OPEN_TYPE_DIRECT;
        result = S_OK;
    } else if (FAILED(result)) {
        return Release(handle, result);
    }
    *connection = handle;
    return result;
}

bool DetectPublicIp(LPCWSTR host, LPCWSTR path, LPWSTR address)
{
    address[0] = 0;
    WCHAR proxy[CMPROXY_PROXYSERVER_MAXSIZE] = L"";
    // With no connection from the manager the request still goes, directly.
    DWORD accessType = INTERNET_OPEN_TYPE_DIRECT;
    HANDLE connection = nullptr;
    EstablishInternetConnection(proxy, &accessType, &connection);

    char *body = static_cast<char *>(malloc(BODY_SIZE));
    DWORD total = 0;
    HINTERNET session = nullptr, server = nullptr, request = nullptr;
    if (body)
        session = platform::InternetOpenW(L"Microsoft Internet Explorer", accessType, proxy[0] ? proxy : nullptr,
                                          nullptr, 0);
    if (session)
        server = platform::InternetConnectW(session, host, INTERNET_DEFAULT_HTTP_PORT, L"", L"",
                                            INTERNET_SERVICE_HTTP, 0, 0);
    if (server)
        request = platform::HttpOpenRequestW(server, nullptr, path, nullptr, nullptr, nullptr, INTERNET_FLAG_RELOAD, 1);
    if (request && platform::HttpSendRequestW(request, nullptr, 0, nullptr, 0)) {
        DWORD got = 0;
        BOOL read = platform::InternetReadFile(request, body, BODY_SIZE, &got);
        while (read && got > 0) {
            total += got;
            read = platform::InternetReadFile(request, body + total, BODY_SIZE - total, &got);
        }
    }
    if (request)
        platform::InternetCloseHandle(request);
    if (server)
        platform::InternetCloseHandle(server);
    if (session)
        platform::InternetCloseHandle(session);
    if (connection)
        platform::ConnMgrReleaseConnection(connection, 1);

    bool found = false;
    if (total > 0) {
        char text[PUBLIC_IP_MAX_TEXT + 1];
        found = ParsePublicIpBody(body, total, text);
        FormatText(address, PUBLIC_IP_TEXT_SIZE, L"%hs", text);
    }
    free(body);
    return found;
}

void RunPublicIpDetection(LPWSTR address)
{
    WCHAR host[ECHO_HOST_SIZE], path[ECHO_PATH_SIZE];
    for (int which = 1; which <= 2; which++) {
        ReadEchoServer(which, host, path);
        if (DetectPublicIp(host, path, address))
            return;
    }
    address[0] = 0;
}
