// scan.h: the intruder scan: one worker per address of the own /24, each probing one host.
#pragma once

#include "platform/net.h"
#include "diagnostics/netbios.h"

#define SCAN_HOST_COUNT 254
#define SCAN_TIMEOUT_MS 5000

// One slot of the host table. A worker writes status last, after the rest;
// the dialog reads the rest only once it sees status 1.
struct HostRecord {
    volatile LONG status;      // 0 pending, 1 answered, -1 no answer
    DWORD listed;              // the dialog's: the row is in its list
    DWORD address;             // network byte order
    char name[NETBIOS_NAME_SIZE];
    BYTE mac[6];
    DWORD macKnown;
    DWORD safe;                // the dialog's: shown as safe
};

// One scan's table. Each worker holds a reference, and so does the dialog
// until the scan is over or replaced; the last one out frees it, so a second
// scan never frees a table that workers of the first can still write.
struct HostTable {
    volatile LONG references;
    volatile LONG abandoned;   // the dialog has let go: results are dropped
    HostRecord hosts[SCAN_HOST_COUNT];
};

struct ScanWorkerParams {
    int index;
    SOCKET socket;
    sockaddr_in target;
    DWORD hostAddress;         // host byte order
    DWORD netAddress;
    HANDLE thread;             // the worker closes it as its last act
    HostTable *table;          // the table of the scan that started it
};

// The scan as the dialog sees it.
struct ScanState {
    HostTable *table;          // the current scan's, or null
    int hostCount;
    DWORD ownAddress;          // network byte order
    BYTE ownMac[6];
};

extern ScanState g_scan;
extern volatile LONG ScanStopRequested;

// The dotted address (ipText, 16 bytes or more) and hardware address of the
// first Ethernet adapter; empty text and a zero MAC when there is none.
void GetCurrentAdapterAddress(char *ipText, BYTE *mac);
// Lets go of the current table (if any): its workers drop what they find and
// the last one frees it.
void ReleaseScanTable();
// Starts one worker per address x.y.z.1 .. x.y.z.254 of the own address.
// False (after "Cannot get current IP address!") without an address, or,
// silently, without memory for the table.
bool StartScan(HWND owner);
DWORD WINAPI ScanHost(LPVOID params);

// The first ARP row of `address` that holds a resolved hardware address:
// true with its bytes (mac: MAXLEN_PHYSADDR) and length, false when the table
// is unavailable or has no such row.
bool FindArpRow(DWORD address, BYTE *mac, DWORD *length);
// The device's reply buffer is 60 bytes; a 64-bit reply header needs more,
// so the buffer is sized from the header the build has: room for the header,
// the 32 data bytes and an ICMP error.
union EchoReply {
    ICMP_ECHO_REPLY first;
    BYTE bytes[sizeof(ICMP_ECHO_REPLY) + 32 + 8];
};

// The echo request's data and options, shared with ping.
void FillEchoRequest(BYTE *data, IP_OPTION_INFORMATION *options);
