// net.h: ICMP echo, the ARP table, Winsock, worker threads and their memory, behind the platform door.
#pragma once

#include "platform/platform.h"

#include <icmpapi.h>

namespace platform {

// ICMP echo (IP helper).
HANDLE IcmpCreateFile();
BOOL IcmpCloseHandle(HANDLE handle);
DWORD IcmpSendEcho(HANDLE handle, IPAddr destination, LPVOID data, WORD dataSize,
                   PIP_OPTION_INFORMATION options, LPVOID reply, DWORD replySize, DWORD timeoutMs);

// The ARP table (IP helper).
DWORD GetIpNetTable(PMIB_IPNETTABLE table, PULONG size, BOOL sorted);

// Winsock 1.1 calls: name resolution and one UDP socket with select.
int WSAStartup(WORD version, LPWSADATA data);
int WSACleanup();
unsigned long inet_addr(const char *text);
struct hostent *gethostbyname(const char *name);
SOCKET socket(int family, int type, int protocol);
int ioctlsocket(SOCKET s, long command, u_long *argument);
int sendto(SOCKET s, const char *data, int length, int flags, const struct sockaddr *to, int toLength);
int select(int count, fd_set *readSet, fd_set *writeSet, fd_set *exceptSet, struct timeval *timeout);
int recvfrom(SOCKET s, char *data, int length, int flags, struct sockaddr *from, int *fromLength);
int closesocket(SOCKET s);

// Threads, a pause, and the memory the scan shares with its workers.
HANDLE CreateThread(LPSECURITY_ATTRIBUTES attributes, SIZE_T stack, LPTHREAD_START_ROUTINE routine,
                    LPVOID parameter, DWORD flags, LPDWORD id);
DWORD ResumeThread(HANDLE thread);
BOOL CloseHandle(HANDLE handle);
void Sleep(DWORD ms);
HLOCAL LocalAlloc(UINT flags, SIZE_T bytes);
HLOCAL LocalFree(HLOCAL block);

} // namespace platform
