// ipbody.h: reading a public-IP echo server's answer (no Windows header: builds natively for fuzzing).
#pragma once

#include <stddef.h>

#define PUBLIC_IP_MAX_TEXT 20

// The body of `size` received bytes is single-byte text up to its first zero
// byte. True when it holds an address: nothing but digits and dots, up to an
// optional CR or LF; more than 20 characters never do, nor does an empty
// body, while a first byte of zero is an empty address. `address` (21 bytes)
// gets the text as read, on some failures too.
bool ParsePublicIpBody(const char *body, size_t size, char *address);
