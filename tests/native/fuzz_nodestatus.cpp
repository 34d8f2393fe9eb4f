// fuzz_nodestatus.cpp: libFuzzer target for the first name of a NetBIOS node-status reply.
// fuzz sources: diagnostics/netbios.cpp
// Input: the reply datagram as received.
#include "diagnostics/netbios.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Exact name(nullptr, NETBIOS_NAME_SIZE, 0x5A);
    // recvfrom's failure (-1) is no reply; a name comes only from a reply that
    // holds every name it claims: its first entry's characters, ended inside
    // 16 bytes. No name leaves the buffer untouched.
    PROMISE(!ReadNodeStatusName(data, -1, name.as<char>()));
    bool read = ReadNodeStatusName(data, (long)size, name.as<char>());
    PROMISE(read == (size >= 75 && size >= 57 + 18 * (size_t)data[56]));
    PROMISE(read ? memcmp(name.bytes, data + 57, Ended(name.as<char>(), 16)) == 0 : name.bytes[0] == 0x5A);
    return 0;
}
