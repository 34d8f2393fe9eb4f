// fake_lan.cpp: a network of scripted hosts, threads that run when the test says, and memory that remembers its frees.
#include "platform/fake/fake_lan.h"

#include <stdlib.h>
#include <string.h>

namespace fake {

Lan g_lan;

namespace {

const BYTE kFreedFill = 0xDD;

struct Thread {
    LPTHREAD_START_ROUTINE routine;
    LPVOID parameter;
    bool resumed, ran, closed;
};
std::vector<Thread> g_threads;

struct Block {
    BYTE *bytes;
    SIZE_T size;
    bool freed;
};
std::vector<Block> g_blocks;

struct Socket {
    bool open;
    DWORD destination;
};
std::vector<Socket> g_sockets;
const SOCKET kFirstSocket = 100;

int g_arpExtraRows;

const NetHost *FindHost(DWORD address)
{
    for (size_t i = 0; i < g_lan.hosts.size(); i++)
        if (g_lan.hosts[i].address == address)
            return &g_lan.hosts[i];
    return nullptr;
}

// Thread handles are small numbers no real handle has.
HANDLE ThreadHandle(size_t i)
{
    return reinterpret_cast<HANDLE>((ULONG_PTR)(0x7A000 + i * 4));
}

Thread *FindThread(HANDLE handle)
{
    ULONG_PTR v = reinterpret_cast<ULONG_PTR>(handle);
    if (v < 0x7A000 || (v - 0x7A000) % 4)
        return nullptr;
    size_t i = (v - 0x7A000) / 4;
    return i < g_threads.size() ? &g_threads[i] : nullptr;
}

void RunIfDue(size_t i)
{
    Thread &t = g_threads[i];
    if (!t.resumed || t.ran || g_lan.deferThreads)
        return;
    t.ran = true;
    t.routine(t.parameter);
}

Socket *FindSocket(SOCKET s)
{
    if (s < kFirstSocket || s - kFirstSocket >= g_sockets.size())
        return nullptr;
    return &g_sockets[s - kFirstSocket];
}

} // namespace

void ResetLan()
{
    for (size_t i = 0; i < g_blocks.size(); i++)
        free(g_blocks[i].bytes);
    g_blocks.clear();
    g_threads.clear();
    g_sockets.clear();
    g_arpExtraRows = 0;
    g_lan = Lan();
}

NetHost &AddHost(const char *address, bool echoes)
{
    NetHost h = NetHost();
    h.address = ::inet_addr(address);
    h.echoes = echoes;
    h.roundTrip = 3;
    g_lan.hosts.push_back(h);
    return g_lan.hosts.back();
}

void SetMac(NetHost &host, BYTE b0, BYTE b1, BYTE b2, BYTE b3, BYTE b4, BYTE b5)
{
    BYTE mac[6] = {b0, b1, b2, b3, b4, b5};
    memcpy(host.mac, mac, 6);
    host.macLength = 6;
    host.inArp = true;
}

std::vector<unsigned char> NodeStatusReply(const char *name, int count, int length)
{
    std::vector<unsigned char> reply(length, 0);
    if (length > 56)
        reply[56] = (unsigned char)count;
    for (int i = 0; i < 15 && 57 + i < length; i++)
        reply[57 + i] = (unsigned char)(*name ? *name++ : ' ');
    return reply;
}

int RunThreads(int n)
{
    bool deferred = g_lan.deferThreads;
    g_lan.deferThreads = false;
    int ran = 0;
    // Workers may start none; the list does not grow while it runs.
    for (size_t i = 0; i < g_threads.size() && ran < n; i++) {
        if (g_threads[i].resumed && !g_threads[i].ran) {
            RunIfDue(i);
            ran++;
        }
    }
    g_lan.deferThreads = deferred;
    return ran;
}

int PendingThreads()
{
    int n = 0;
    for (size_t i = 0; i < g_threads.size(); i++)
        n += !g_threads[i].ran;
    return n;
}

bool FreedBlocksUntouched()
{
    for (size_t i = 0; i < g_blocks.size(); i++) {
        if (!g_blocks[i].freed)
            continue;
        for (SIZE_T k = 0; k < g_blocks[i].size; k++)
            if (g_blocks[i].bytes[k] != kFreedFill)
                return false;
    }
    return true;
}

void FillAdapterAddress(IP_ADAPTER_INFO *info)
{
    for (size_t i = 0; i < g_lan.addresses.size(); i++) {
        const AdapterAddress &a = g_lan.addresses[i];
        if (a.adapter != info->AdapterName)
            continue;
        lstrcpynA(info->IpAddressList.IpAddress.String, a.ip.c_str(), 16);
        info->CurrentIpAddress = a.currentIsNull ? nullptr : &info->IpAddressList;
        memcpy(info->Address, a.mac, 6);
        info->AddressLength = a.macLength;
    }
}

} // namespace fake

using fake::g_lan;

namespace platform {

HANDLE IcmpCreateFile()
{
    if (g_lan.noIcmp)
        return INVALID_HANDLE_VALUE;
    g_lan.icmpOpen++;
    return reinterpret_cast<HANDLE>((ULONG_PTR)0x1C4);
}

BOOL IcmpCloseHandle(HANDLE)
{
    g_lan.icmpOpen--;
    return TRUE;
}

DWORD IcmpSendEcho(HANDLE, IPAddr destination, LPVOID data, WORD dataSize, PIP_OPTION_INFORMATION options,
                   LPVOID reply, DWORD replySize, DWORD timeoutMs)
{
    fake::Echo e = {destination, dataSize == 32 && options && options->Ttl == 128 && options->Tos == 0 &&
                                     options->Flags == 0 && options->OptionsSize == 0,
                    replySize, timeoutMs};
    for (int i = 0; e.requestAsSent && i < 32; i++)
        e.requestAsSent = static_cast<BYTE *>(data)[i] == 0x20 + i;
    g_lan.echoes.push_back(e);
    // As the real one: the reply must have room for the header, the data and an ICMP error.
    if (replySize < sizeof(ICMP_ECHO_REPLY) + dataSize + 8) {
        SetLastError(IP_BUF_TOO_SMALL);
        return 0;
    }
    const fake::NetHost *h = fake::FindHost(destination);
    if (!h || !h->echoes) {
        SetLastError(IP_REQ_TIMED_OUT);
        return 0;
    }
    ICMP_ECHO_REPLY *r = static_cast<ICMP_ECHO_REPLY *>(reply);
    memset(r, 0, sizeof *r);
    r->Address = h->replyFrom ? h->replyFrom : destination;
    r->Status = IP_SUCCESS;
    r->RoundTripTime = h->roundTrip;
    r->DataSize = dataSize;
    return 1;
}

DWORD GetIpNetTable(PMIB_IPNETTABLE table, PULONG size, BOOL sorted)
{
    std::vector<MIB_IPNETROW> rows;
    for (size_t i = 0; i < g_lan.hosts.size(); i++) {
        const fake::NetHost &h = g_lan.hosts[i];
        if (!h.inArp)
            continue;
        MIB_IPNETROW r = {};
        r.dwIndex = 1;
        r.dwAddr = h.address;
        r.dwPhysAddrLen = h.macLength;
        memcpy(r.bPhysAddr, h.mac, sizeof r.bPhysAddr);
        r.dwType = 3;
        rows.push_back(r);
    }
    // A sweep in progress: rows of strangers that resolved meanwhile.
    for (int i = 0; i < fake::g_arpExtraRows; i++) {
        MIB_IPNETROW r = {};
        r.dwAddr = htonl(0xCB007100 + i + 1);   // 203.0.113.x
        r.dwType = 3;
        rows.push_back(r);
    }
    if (sorted) {
        for (size_t i = 1; i < rows.size(); i++)
            for (size_t k = i; k > 0 && ntohl(rows[k - 1].dwAddr) > ntohl(rows[k].dwAddr); k--) {
                MIB_IPNETROW t = rows[k];
                rows[k] = rows[k - 1];
                rows[k - 1] = t;
            }
    }
    ULONG need = (ULONG)(sizeof(DWORD) + rows.size() * sizeof(MIB_IPNETROW));
    if (rows.empty())
        need = 0;
    if (!table || *size < need) {
        *size = need;
        if (g_lan.arpGrowths > 0) {
            g_lan.arpGrowths--;
            fake::g_arpExtraRows += 40;   // more than a reader's spare room
        }
        return need ? ERROR_INSUFFICIENT_BUFFER : ERROR_NO_DATA;
    }
    if (rows.empty())
        return ERROR_NO_DATA;
    table->dwNumEntries = (DWORD)rows.size();
    memcpy(table->table, &rows[0], rows.size() * sizeof(MIB_IPNETROW));
    return NO_ERROR;
}

int WSAStartup(WORD version, LPWSADATA data)
{
    g_lan.wsaVersions.push_back(version);
    g_lan.wsaBalance++;
    if (data)
        memset(data, 0, sizeof *data);
    return 0;
}

int WSACleanup()
{
    g_lan.wsaBalance--;
    return 0;
}

unsigned long inet_addr(const char *text)
{
    return ::inet_addr(text);
}

struct hostent *gethostbyname(const char *name)
{
    static struct hostent entry;
    static char *list[2];
    static DWORD address;
    g_lan.lookedUp.push_back(name);
    for (size_t i = 0; i < g_lan.names.size(); i++) {
        if (lstrcmpiA(g_lan.names[i].first.c_str(), name) == 0) {
            address = g_lan.names[i].second;
            list[0] = reinterpret_cast<char *>(&address);
            list[1] = nullptr;
            entry.h_addrtype = AF_INET;
            entry.h_length = 4;
            entry.h_addr_list = list;
            return &entry;
        }
    }
    return nullptr;
}

SOCKET socket(int family, int type, int)
{
    if (family != AF_INET || type != SOCK_DGRAM)
        return INVALID_SOCKET;
    fake::Socket s = {true, 0};
    fake::g_sockets.push_back(s);
    g_lan.socketsOpen++;
    return fake::kFirstSocket + fake::g_sockets.size() - 1;
}

int ioctlsocket(SOCKET, long, u_long *)
{
    return 0;
}

int sendto(SOCKET s, const char *, int length, int, const struct sockaddr *to, int)
{
    fake::Socket *k = fake::FindSocket(s);
    if (!k || !to)
        return SOCKET_ERROR;
    const sockaddr_in *in = reinterpret_cast<const sockaddr_in *>(to);
    if (in->sin_family != AF_INET || in->sin_port != htons(137))
        return SOCKET_ERROR;
    k->destination = in->sin_addr.s_addr;
    g_lan.queried.push_back(k->destination);
    return length;
}

int select(int, fd_set *readSet, fd_set *, fd_set *exceptSet, struct timeval *)
{
    // One socket per call, as the workers ask.
    fake::Socket *k = readSet && readSet->fd_count ? fake::FindSocket(readSet->fd_array[0]) : nullptr;
    const fake::NetHost *h = k ? fake::FindHost(k->destination) : nullptr;
    if (exceptSet)
        exceptSet->fd_count = 0;
    if (!h || h->nodeStatus.empty()) {
        if (readSet)
            readSet->fd_count = 0;
        return 0;
    }
    readSet->fd_count = 1;
    return 1;
}

int recvfrom(SOCKET s, char *data, int length, int, struct sockaddr *, int *)
{
    fake::Socket *k = fake::FindSocket(s);
    const fake::NetHost *h = k ? fake::FindHost(k->destination) : nullptr;
    if (!h || h->nodeStatus.empty())
        return SOCKET_ERROR;
    int n = (int)h->nodeStatus.size() < length ? (int)h->nodeStatus.size() : length;
    memcpy(data, &h->nodeStatus[0], n);
    return n;
}

int closesocket(SOCKET s)
{
    fake::Socket *k = fake::FindSocket(s);
    if (!k || !k->open)
        return SOCKET_ERROR;
    k->open = false;
    g_lan.socketsOpen--;
    return 0;
}

HANDLE CreateThread(LPSECURITY_ATTRIBUTES, SIZE_T, LPTHREAD_START_ROUTINE routine, LPVOID parameter,
                    DWORD flags, LPDWORD id)
{
    fake::Thread t = {routine, parameter, !(flags & CREATE_SUSPENDED), false, false};
    fake::g_threads.push_back(t);
    g_lan.threadsCreated++;
    g_lan.threadHandlesOpen++;
    if (flags & CREATE_SUSPENDED)
        g_lan.threadsSuspended++;
    if (id)
        *id = (DWORD)fake::g_threads.size();
    size_t i = fake::g_threads.size() - 1;
    // Not suspended, a thread may well end before CreateThread returns.
    fake::RunIfDue(i);
    return fake::ThreadHandle(i);
}

DWORD ResumeThread(HANDLE thread)
{
    fake::Thread *t = fake::FindThread(thread);
    if (!t || t->closed)
        return (DWORD)-1;
    bool was = t->resumed;
    t->resumed = true;
    if (!was)
        fake::RunIfDue(t - &fake::g_threads[0]);
    return was ? 0 : 1;
}

BOOL CloseHandle(HANDLE handle)
{
    fake::Thread *t = fake::FindThread(handle);
    if (!t || t->closed) {
        g_lan.badHandleCloses++;
        return FALSE;
    }
    t->closed = true;
    g_lan.threadHandlesOpen--;
    return TRUE;
}

void Sleep(DWORD ms)
{
    g_lan.sleeps.push_back(ms);
}

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes)
{
    if (g_lan.allocFailCountdown > 0 && --g_lan.allocFailCountdown == 0)
        return nullptr;
    fake::Block b = {static_cast<BYTE *>(malloc(bytes ? bytes : 1)), bytes, false};
    if (!b.bytes)
        return nullptr;
    memset(b.bytes, (flags & LMEM_ZEROINIT) ? 0 : 0xCD, bytes);
    fake::g_blocks.push_back(b);
    g_lan.liveBlocks++;
    return b.bytes;
}

HLOCAL LocalFree(HLOCAL block)
{
    // Kept, filled, until the next reset: a later write to it shows.
    for (size_t i = 0; i < fake::g_blocks.size(); i++) {
        fake::Block &b = fake::g_blocks[i];
        if (b.bytes == block && !b.freed) {
            b.freed = true;
            memset(b.bytes, fake::kFreedFill, b.size);
            g_lan.liveBlocks--;
            return nullptr;
        }
    }
    return block;
}

} // namespace platform
