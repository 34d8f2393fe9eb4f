// netbios.cpp: the NetBIOS node-status query and the reading of its reply; the safe list's MAC text.
#include "diagnostics/netbios.h"

#include <string.h>

const unsigned char NodeStatusRequest[NODE_STATUS_REQUEST_SIZE] = {
    0xA2, 0x48,             // transaction
    0x00, 0x00,             // a query, no recursion
    0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x20,                   // "*" and 15 NULs, first-level encoded
    'C', 'K', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A',
    'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A',
    0x00,
    0x00, 0x21,             // NBSTAT
    0x00, 0x01,             // IN
};

// Fixed offsets: the reply repeats the 34-byte question name uncompressed,
// so the name count sits at 56 and the 18-byte entries follow it.
static const long kCountOffset = 56;
static const long kFirstName = 57;
static const long kEntrySize = 18;

bool ReadNodeStatusName(const unsigned char *reply, long length, char *name)
{
    if (length < 75 || length < kFirstName + kEntrySize * reply[kCountOffset])
        return false;
    memcpy(name, reply + kFirstName, 15);
    name[15] = 0;
    // Position 0 stays: an all-blank name keeps one blank.
    for (int i = 14; i >= 1 && name[i] == ' '; i--)
        name[i] = 0;
    return true;
}

static int HexValue(wchar_t c)
{
    return c < 58 ? c - 48 : c - 55;
}

bool ParseMacText(const wchar_t *text, unsigned char *mac)
{
    memset(mac, 0, 6);
    for (int i = 0; i < 17; i++) {
        if (!text[i])
            return false;
    }
    for (int k = 0; k < 6; k++)
        mac[k] = (unsigned char)(HexValue(text[3 * k]) * 16 + HexValue(text[3 * k + 1]));
    return true;
}
