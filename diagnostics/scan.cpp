// scan.cpp: the intruder scan: the own address, the start of 254 workers, and one worker's probe.
#include "diagnostics/scan.h"
#include "platform/platform.h"

#include <string.h>

ScanState g_scan = {nullptr, SCAN_HOST_COUNT, 0, {0, 0, 0, 0, 0, 0}};
volatile LONG ScanStopRequested = 0;

// The ARP table grows between the size query and the read while a sweep
// resolves addresses: room for some more rows than asked, a few tries, then
// the row counts as missing.
static const int kArpTries = 10;
static const ULONG kArpSpareRows = 32;

void FillEchoRequest(BYTE *data, IP_OPTION_INFORMATION *options)
{
    for (int i = 0; i < 32; i++)
        data[i] = (BYTE)(0x20 + i);
    memset(options, 0, sizeof *options);
    options->Ttl = 128;
}

bool FindArpRow(DWORD address, BYTE *mac, DWORD *length)
{
    for (int attempt = 0; attempt < kArpTries; attempt++) {
        ULONG size = 0;
        platform::GetIpNetTable(nullptr, &size, TRUE);
        if (size == 0)
            return false;
        size += kArpSpareRows * sizeof(MIB_IPNETROW);
        MIB_IPNETTABLE *table = static_cast<MIB_IPNETTABLE *>(platform::LocalAlloc(LPTR, size));
        if (!table)
            return false;
        DWORD result = platform::GetIpNetTable(table, &size, TRUE);
        bool found = false;
        if (result == NO_ERROR) {
            for (DWORD i = 0; i < table->dwNumEntries; i++) {
                const MIB_IPNETROW &row = table->table[i];
                if (row.dwAddr != address)
                    continue;
                // A desktop lists an address it is still resolving with a zero MAC.
                DWORD n = row.dwPhysAddrLen > MAXLEN_PHYSADDR ? MAXLEN_PHYSADDR : row.dwPhysAddrLen;
                bool resolved = n == 0;
                for (DWORD k = 0; k < n; k++)
                    resolved = resolved || row.bPhysAddr[k] != 0;
                if (!resolved)
                    break;
                memcpy(mac, row.bPhysAddr, MAXLEN_PHYSADDR);
                *length = n;
                found = true;
                break;
            }
        }
        platform::LocalFree(table);
        if (result != ERROR_INSUFFICIENT_BUFFER)
            return found;
    }
    return false;
}

void GetCurrentAdapterAddress(char *ipText, BYTE *mac)
{
    ipText[0] = 0;
    memset(mac, 0, 6);
    DWORD count = 0;
    if (platform::GetNumberOfInterfaces(&count) != NO_ERROR || count == 0)
        return;
    ULONG size = 0;
    if (platform::GetAdaptersInfo(nullptr, &size) != ERROR_BUFFER_OVERFLOW)
        return;
    IP_ADAPTER_INFO *info = static_cast<IP_ADAPTER_INFO *>(platform::LocalAlloc(LPTR, size));
    if (!info)
        return;
    if (platform::GetAdaptersInfo(info, &size) == NO_ERROR) {
        for (IP_ADAPTER_INFO *a = info; a; a = a->Next) {
            if (a->Type != MIB_IF_TYPE_ETHERNET)
                continue;
            // The desktop leaves CurrentIpAddress unset; its first address is the current one.
            const IP_ADDR_STRING *current = a->CurrentIpAddress ? a->CurrentIpAddress : &a->IpAddressList;
            memcpy(ipText, current->IpAddress.String, 15);
            ipText[15] = 0;
            if (a->AddressLength > 0)
                memcpy(mac, a->Address, 6);
            break;
        }
    }
    platform::LocalFree(info);
}

static void ReleaseTable(HostTable *table)
{
    if (InterlockedDecrement(&table->references) == 0)
        platform::LocalFree(table);
}

void ReleaseScanTable()
{
    HostTable *table = g_scan.table;
    if (!table)
        return;
    g_scan.table = nullptr;
    table->abandoned = 1;
    ReleaseTable(table);
}

bool StartScan(HWND owner)
{
    ScanStopRequested = 0;
    char text[20];
    GetCurrentAdapterAddress(text, g_scan.ownMac);
    if (!text[0]) {
        platform::MessageBoxW(owner, L"Cannot get current IP address!", L"Error", MB_OK);
        return false;
    }
    g_scan.ownAddress = platform::inet_addr(text);
    DWORD first = (ntohl(g_scan.ownAddress) & 0xFFFFFF00u) + 1;

    ReleaseScanTable();
    HostTable *table = static_cast<HostTable *>(platform::LocalAlloc(LPTR, sizeof(HostTable)));
    if (!table)
        return false;
    table->references = 1;
    g_scan.table = table;
    g_scan.hostCount = SCAN_HOST_COUNT;

    for (int i = 0; i < SCAN_HOST_COUNT; i++) {
        ScanWorkerParams *p = static_cast<ScanWorkerParams *>(platform::LocalAlloc(LPTR, sizeof *p));
        if (!p)
            continue;   // its slot stays pending
        p->index = i;
        p->hostAddress = first + i;
        p->netAddress = htonl(first + i);
        p->table = table;
        InterlockedIncrement(&table->references);
        // Suspended until its handle is stored: the worker closes it at its end.
        HANDLE thread = platform::CreateThread(nullptr, 0, ScanHost, p, CREATE_SUSPENDED, nullptr);
        if (!thread) {
            InterlockedDecrement(&table->references);
            platform::LocalFree(p);
            continue;
        }
        p->thread = thread;
        platform::ResumeThread(thread);
    }
    return true;
}

static void AskName(ScanWorkerParams *p, HostRecord *record, DWORD dest)
{
    p->socket = platform::socket(AF_INET, SOCK_DGRAM, 0);
    if (p->socket == INVALID_SOCKET)
        return;
    u_long nonBlocking = 1;
    platform::ioctlsocket(p->socket, FIONBIO, &nonBlocking);
    memset(&p->target, 0, sizeof p->target);
    p->target.sin_family = AF_INET;
    p->target.sin_port = htons(137);
    p->target.sin_addr.s_addr = dest;
    int sent = platform::sendto(p->socket, reinterpret_cast<const char *>(NodeStatusRequest),
                                NODE_STATUS_REQUEST_SIZE, 0, reinterpret_cast<sockaddr *>(&p->target),
                                sizeof p->target);
    if (sent > 0) {
        fd_set readable, failed;
        FD_ZERO(&readable);
        FD_ZERO(&failed);
        FD_SET(p->socket, &readable);
        FD_SET(p->socket, &failed);
        timeval wait = {SCAN_TIMEOUT_MS / 1000, 0};
        if (platform::select(0, &readable, nullptr, &failed, &wait) > 0 && readable.fd_count == 1) {
            unsigned char reply[1024];
            int n = platform::recvfrom(p->socket, reinterpret_cast<char *>(reply), sizeof reply, 0, nullptr,
                                       nullptr);
            ReadNodeStatusName(reply, n, record->name);
        }
    }
    platform::closesocket(p->socket);
}

DWORD WINAPI ScanHost(LPVOID parameter)
{
    ScanWorkerParams *p = static_cast<ScanWorkerParams *>(parameter);
    HostTable *table = p->table;
    HostRecord *record = &table->hosts[p->index];
    WSADATA wsa;
    platform::WSAStartup(0x0102, &wsa);
    DWORD dest = htonl(p->hostAddress);
    bool answered = false;
    if (dest != 0xFFFFFFFFu) {
        HANDLE icmp = platform::IcmpCreateFile();
        if (icmp != INVALID_HANDLE_VALUE) {
            BYTE data[32];
            IP_OPTION_INFORMATION options;
            FillEchoRequest(data, &options);
            EchoReply reply;
            DWORD replies = platform::IcmpSendEcho(icmp, dest, data, 32, &options, reply.bytes,
                                                   sizeof reply.bytes, SCAN_TIMEOUT_MS);
            // A desktop reports an unreachable host as a reply with an error status.
            answered = replies > 0 && reply.first.Address == dest && reply.first.Status == IP_SUCCESS;
            platform::IcmpCloseHandle(icmp);
        }
    }
    if (!ScanStopRequested && !table->abandoned) {
        if (!answered) {
            InterlockedExchange(&record->status, -1);
        } else {
            record->address = dest;
            record->macKnown = 0;
            BYTE mac[MAXLEN_PHYSADDR];
            DWORD length = 0;
            if (FindArpRow(dest, mac, &length) && length > 0) {
                memcpy(record->mac, mac, 6);
                record->macKnown = 1;
            }
            AskName(p, record, dest);
            InterlockedExchange(&record->status, 1);
        }
    }
    platform::WSACleanup();
    platform::CloseHandle(p->thread);
    platform::LocalFree(p);
    ReleaseTable(table);
    return 0;
}
