// fake_lan.h: the fake device's network (echo replies, ARP table, names, node-status replies), threads and memory.
#pragma once

#include "platform/net.h"

#include <string>
#include <vector>

namespace fake {

// One address on the fake network.
struct NetHost {
    DWORD address;                        // network byte order
    bool echoes;                          // answers an echo
    DWORD replyFrom;                      // the reply's source; 0: the host itself
    DWORD roundTrip;                      // ms
    bool inArp;                           // has a row in the ARP table
    BYTE mac[MAXLEN_PHYSADDR];
    DWORD macLength;
    std::vector<unsigned char> nodeStatus;   // the reply on port 137; empty: none
};

// What GetAdaptersInfo says of an adapter's address (by adapter name).
struct AdapterAddress {
    std::string adapter;
    std::string ip;
    BYTE mac[6];
    UINT macLength;
    bool currentIsNull;                   // CurrentIpAddress NULL, as Wine leaves it
};

struct Echo {
    DWORD destination;
    bool requestAsSent;                   // 32 bytes 0x20.., TTL 128, TOS 0, flags 0
    DWORD replySize, timeout;
};

struct Lan {
    std::vector<NetHost> hosts;
    std::vector<std::pair<std::string, DWORD> > names;   // what gethostbyname finds
    std::vector<AdapterAddress> addresses;
    bool noIcmp;                          // IcmpCreateFile fails
    int arpGrowths;                       // times the table gains a row right after a size query
    bool deferThreads;                    // resumed threads wait for RunThreads
    int allocFailCountdown;               // the nth LocalAlloc from now fails; 0: none

    std::vector<std::string> lookedUp;    // every name given to gethostbyname
    std::vector<Echo> echoes;
    std::vector<DWORD> queried;           // every node-status query's destination
    std::vector<WORD> wsaVersions;
    int wsaBalance, icmpOpen, socketsOpen;
    int threadsCreated, threadsSuspended, badHandleCloses, threadHandlesOpen;
    std::vector<DWORD> sleeps;
    int liveBlocks;
};

extern Lan g_lan;

// A quiet network: no hosts, names or addresses, threads run when resumed.
void ResetLan();
NetHost &AddHost(const char *address, bool echoes);
void SetMac(NetHost &host, BYTE b0, BYTE b1, BYTE b2, BYTE b3, BYTE b4, BYTE b5);
// A node-status reply of `length` bytes whose count byte says `count` and whose first name is `name`.
std::vector<unsigned char> NodeStatusReply(const char *name, int count, int length);
// Runs up to `n` resumed threads that have not run yet, oldest first; the number run.
int RunThreads(int n = 1 << 30);
int PendingThreads();
// True when every block given back through LocalFree still holds the fill it got then.
bool FreedBlocksUntouched();
// Called by the fake GetAdaptersInfo for each record it fills.
void FillAdapterAddress(IP_ADAPTER_INFO *info);

} // namespace fake
