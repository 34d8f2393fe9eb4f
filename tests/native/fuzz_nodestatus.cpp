// fuzz_nodestatus.cpp: libFuzzer target for the first name of a NetBIOS node-status reply.
// fuzz sources: diagnostics/netbios.cpp
// Input: the reply datagram as received.
#include "diagnostics/netbios.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Exact reply(data, size);
    Exact name(NETBIOS_NAME_SIZE, 0x5A);
    // recvfrom's failure (-1) is no reply.
    PROMISE(!ReadNodeStatusName(reply.bytes, -1, reinterpret_cast<char *>(name.bytes)));

    bool read = ReadNodeStatusName(reply.bytes, (long)size, reinterpret_cast<char *>(name.bytes));
    // Long enough for the fixed part and for every name it says it holds.
    PROMISE(read == (size >= 75 && size >= 57 + 18 * (size_t)data[56]));
    size_t touched = read ? 16 : 0;
    for (size_t i = touched; i < NETBIOS_NAME_SIZE; i++)
        PROMISE(name.bytes[i] == 0x5A);
    if (!read)
        return 0;
    // The first entry's 15 characters, trailing blanks dropped but never the first.
    size_t end = 15;
    while (end > 1 && data[57 + end - 1] == ' ')
        end--;
    for (size_t i = 0; i < 16; i++)
        PROMISE(name.bytes[i] == (i < end ? data[57 + i] : 0));
    return 0;
}
