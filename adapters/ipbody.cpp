// ipbody.cpp: the echo server's body rule.
#include "adapters/ipbody.h"

#include <string.h>

bool ParsePublicIpBody(const char *body, size_t size, char *address)
{
    address[0] = 0;
    if (size == 0)
        return false;
    size_t length = 0;
    while (length < size && body[length])
        length++;
    if (length > PUBLIC_IP_MAX_TEXT)
        return false;
    memcpy(address, body, length);
    address[length] = 0;
    // The address is not checked for its form: "1.2.3" or "...." pass as they stand.
    for (size_t i = 0; i < length; i++) {
        char c = body[i];
        if ((c >= '0' && c <= '9') || c == '.')
            continue;
        if (c == '\r' || c == '\n') {
            address[i] = 0;
            return true;
        }
        return false;
    }
    return true;
}
