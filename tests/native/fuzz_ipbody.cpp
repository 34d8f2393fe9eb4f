// fuzz_ipbody.cpp: libFuzzer target for the public-IP echo server's body rule.
// fuzz sources: adapters/ipbody.cpp
// Input: the body as received.
#include "adapters/ipbody.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Exact body(data, size);
    Exact address(PUBLIC_IP_MAX_TEXT + 1, 0x5A);
    char *text = reinterpret_cast<char *>(address.bytes);
    bool found = ParsePublicIpBody(reinterpret_cast<const char *>(body.bytes), size, text);
    size_t length = strnlen(text, PUBLIC_IP_MAX_TEXT + 1);
    PROMISE(length <= PUBLIC_IP_MAX_TEXT);

    // The reference: the text up to a zero byte, digits and dots up to an
    // optional line end, 20 characters at most; an empty text is an address.
    size_t n = strnlen(reinterpret_cast<const char *>(data), size), i = 0;
    while (i < n && ((data[i] >= '0' && data[i] <= '9') || data[i] == '.'))
        i++;
    bool expected = size > 0 && n <= PUBLIC_IP_MAX_TEXT && (i == n || data[i] == '\r' || data[i] == '\n');
    PROMISE(found == expected);
    if (found)
        PROMISE(length == i && memcmp(text, data, i) == 0);
    return 0;
}
