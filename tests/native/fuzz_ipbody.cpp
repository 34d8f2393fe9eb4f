// fuzz_ipbody.cpp: libFuzzer target for the public-IP echo server's body rule.
// fuzz sources: adapters/ipbody.cpp
// Input: the body as received.
#include "adapters/ipbody.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Exact address(nullptr, PUBLIC_IP_MAX_TEXT + 1, 0x5A);
    bool found = ParsePublicIpBody(reinterpret_cast<const char *>(data), size, address.as<char>());
    size_t n = Ended(address.as<char>(), PUBLIC_IP_MAX_TEXT + 1);
    // An address is the body's own digits and dots, up to its end, a zero byte or a line end.
    PROMISE(!found || (size > 0 && strspn(address.as<char>(), "0123456789.") == n && !memcmp(address.bytes, data, n)));
    PROMISE(!found || n == size || !data[n] || data[n] == '\r' || data[n] == '\n');
    return 0;
}
