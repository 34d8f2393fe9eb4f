// net_win32.cpp: ICMP, the ARP table, Winsock and threads, as the device and the desktop have them.
#include "platform/net.h"

namespace platform {

HANDLE IcmpCreateFile()
{
    return ::IcmpCreateFile();
}

BOOL IcmpCloseHandle(HANDLE handle)
{
    return ::IcmpCloseHandle(handle);
}

DWORD IcmpSendEcho(HANDLE handle, IPAddr destination, LPVOID data, WORD dataSize,
                   PIP_OPTION_INFORMATION options, LPVOID reply, DWORD replySize, DWORD timeoutMs)
{
    return ::IcmpSendEcho(handle, destination, data, dataSize, options, reply, replySize, timeoutMs);
}

DWORD GetIpNetTable(PMIB_IPNETTABLE table, PULONG size, BOOL sorted)
{
    return ::GetIpNetTable(table, size, sorted);
}

#ifndef _WIN32_WCE
// Wine's ws2_32 counts starts and cleanups without a lock, and the cleanup
// that brings the count to zero closes every socket of the process. The
// scan's 254 workers each start and clean up at once: counts were lost (some
// left over once every worker had ended after 30 scans), so a worker's
// cleanup could also close the sockets of others. One call at a time on the
// desktop; the device's Winsock keeps its own count safely.
static volatile LONG g_winsockBusy = 0;

static void LockWinsock()
{
    while (InterlockedExchange(&g_winsockBusy, 1))
        Sleep(0);
}

static void UnlockWinsock()
{
    InterlockedExchange(&g_winsockBusy, 0);
}
#else
static void LockWinsock() {}
static void UnlockWinsock() {}
#endif

int WSAStartup(WORD version, LPWSADATA data)
{
    LockWinsock();
    int result = ::WSAStartup(version, data);
    UnlockWinsock();
    return result;
}

int WSACleanup()
{
    LockWinsock();
    int result = ::WSACleanup();
    UnlockWinsock();
    return result;
}

unsigned long inet_addr(const char *text)
{
    return ::inet_addr(text);
}

struct hostent *gethostbyname(const char *name)
{
    return ::gethostbyname(name);
}

SOCKET socket(int family, int type, int protocol)
{
    return ::socket(family, type, protocol);
}

int ioctlsocket(SOCKET s, long command, u_long *argument)
{
    return ::ioctlsocket(s, command, argument);
}

int sendto(SOCKET s, const char *data, int length, int flags, const struct sockaddr *to, int toLength)
{
    return ::sendto(s, data, length, flags, to, toLength);
}

int select(int count, fd_set *readSet, fd_set *writeSet, fd_set *exceptSet, struct timeval *timeout)
{
    return ::select(count, readSet, writeSet, exceptSet, timeout);
}

int recvfrom(SOCKET s, char *data, int length, int flags, struct sockaddr *from, int *fromLength)
{
    return ::recvfrom(s, data, length, flags, from, fromLength);
}

int closesocket(SOCKET s)
{
    return ::closesocket(s);
}

HANDLE CreateThread(LPSECURITY_ATTRIBUTES attributes, SIZE_T stack, LPTHREAD_START_ROUTINE routine,
                    LPVOID parameter, DWORD flags, LPDWORD id)
{
    return ::CreateThread(attributes, stack, routine, parameter, flags, id);
}

DWORD ResumeThread(HANDLE thread)
{
    return ::ResumeThread(thread);
}

BOOL CloseHandle(HANDLE handle)
{
    return ::CloseHandle(handle);
}

void Sleep(DWORD ms)
{
    ::Sleep(ms);
}

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes)
{
    return ::LocalAlloc(flags, bytes);
}

HLOCAL LocalFree(HLOCAL block)
{
    return ::LocalFree(block);
}

} // namespace platform
