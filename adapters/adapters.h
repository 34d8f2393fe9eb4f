// adapters.h: adapter details, DHCP lease with release and renew, public-IP detection.
#pragma once

#include <windows.h>
#include <stddef.h>

#include "platform/connmgr.h"

INT_PTR CALLBACK AdapterDetailsDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DhcpDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// The name of an interface type ("ethernet", "ppp", …); empty for a type it does not know.
LPCWSTR InterfaceTypeName(DWORD type);
// Fills the adapter details of the first Ethernet-type adapter, which becomes
// the monitored one; stops at the first failure, leaving the rest blank.
void FillAdapterDetails(HWND dialog);
// The interface index of the adapter named exactly so, also kept as the
// monitored index; 0xFFFFFFFF when there is none.
DWORD FindInterfaceIndex(LPCWSTR adapterName);

// Fills the DHCP lines from the last DHCP-enabled adapter, which becomes the
// monitored one; false when no adapter has DHCP (or there is no interface).
bool FillDhcpInfo(HWND dialog);
// Unix seconds, read as unsigned 32-bit, as a FILETIME.
FILETIME UnixTimeToFileTime(DWORD seconds);
// "Thu. Jan 1, 1970 01:00:00".
LPWSTR FormatLeaseTime(const SYSTEMTIME &time, LPWSTR text, size_t size);

// The echo servers, settable under the item key: EchoHost1 and EchoPath1
// (asked first), EchoHost2 and EchoPath2 (asked when the first fails).
#define ECHO_HOST_SIZE 128
#define ECHO_PATH_SIZE 128
void ReadEchoServer(int which, LPWSTR host, LPWSTR path);

// Asks the connection manager for the internet and its HTTP proxy: a
// negative code on failure. `proxy` (CMPROXY_PROXYSERVER_MAXSIZE) stays
// empty without one; `accessType` is set only where the manager says.
HRESULT EstablishInternetConnection(LPWSTR proxy, DWORD *accessType, HANDLE *connection);
// One GET of http://host/path; true when the body held an address, then in
// `address` (PUBLIC_IP_TEXT_SIZE characters: 20 and the terminator).
#define PUBLIC_IP_TEXT_SIZE 21
bool DetectPublicIp(LPCWSTR host, LPCWSTR path, LPWSTR address);
// The Detect button: the first server, then the second only if the first
// failed. The address, or an empty text when both failed.
void RunPublicIpDetection(LPWSTR address);
