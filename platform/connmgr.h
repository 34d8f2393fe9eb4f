// connmgr.h: the connection manager's records, as its SDK lays them out (no toolchain here has its header).
#pragma once

#include <windows.h>

#define CONNMGR_PARAM_GUIDDESTNET        0x1
#define CONNMGR_FLAG_PROXY_HTTP          0x1
#define CONNMGR_PRIORITY_USERBACKGROUND  0x2000
#define CONNMGR_STATUS_CONNECTED         0x10

#define CMPROXY_PROXYSERVER_MAXSIZE   256
#define CMPROXY_USERNAME_MAXSIZE      32
#define CMPROXY_PASSWORD_MAXSIZE      32
#define CMPROXY_PROXYOVERRIDE_MAXSIZE 64
#define CMPROXY_EXTRAINFO_MAXSIZE     256

struct CONNMGR_CONNECTIONINFO {
    DWORD cbSize;
    DWORD dwParams;
    DWORD dwFlags;
    DWORD dwPriority;
    BOOL bExclusive;
    BOOL bDisabled;
    GUID guidDestNet;
    HWND hWnd;
    UINT uMsg;
    LPARAM lParam;
    ULONG ulMaxCost;
    ULONG ulMinRcvBw;
    ULONG ulMaxConnLatency;
};

#ifdef _WIN32_WCE
static_assert(sizeof(CONNMGR_CONNECTIONINFO) == 64, "CONNMGR_CONNECTIONINFO is 64 bytes on the device");
#endif

struct PROXY_CONFIG {
    DWORD dwType;
    DWORD dwEnable;
    WCHAR szProxyServer[CMPROXY_PROXYSERVER_MAXSIZE];
    WCHAR szUsername[CMPROXY_USERNAME_MAXSIZE];
    WCHAR szPassword[CMPROXY_PASSWORD_MAXSIZE];
    WCHAR szProxyOverride[CMPROXY_PROXYOVERRIDE_MAXSIZE];
    WCHAR szExtraInfo[CMPROXY_EXTRAINFO_MAXSIZE];
};
// The provider checks the size it is handed.
static_assert(sizeof(PROXY_CONFIG) == 1288, "PROXY_CONFIG is 1288 bytes on the device");

// The internet as a destination network, and the provider that knows its proxy.
static const GUID IID_DestNetInternet = {0x436ef144, 0xb4fb, 0x4863, {0xa0, 0x41, 0x8f, 0x90, 0x5a, 0x62, 0xc5, 0x72}};
static const GUID IID_ConnPrv_IProxyExtension = {0xaf96b0bd, 0xa481, 0x482c, {0xa0, 0x94, 0xa8, 0x44, 0x87, 0x67, 0xa0, 0xc0}};
