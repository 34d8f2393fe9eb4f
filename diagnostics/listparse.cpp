// listparse.cpp: the records of the host list and the safe list.
#include "diagnostics/listparse.h"

#include <string.h>

void HostRecordText(const unsigned char *record, wchar_t *text)
{
    int i = 0;
    for (; i < HOST_RECORD_CHARS - 1; i++) {
        text[i] = (wchar_t)(record[2 * i] | record[2 * i + 1] << 8);
        if (!text[i])
            return;
    }
    text[i] = 0;
}

void HostRecordBytes(const wchar_t *host, unsigned char *record)
{
    memset(record, 0, HOST_RECORD_BYTES);
    for (int i = 0; i < HOST_RECORD_CHARS - 1 && host[i]; i++) {
        record[2 * i] = (unsigned char)(host[i] & 0xFF);
        record[2 * i + 1] = (unsigned char)((host[i] >> 8) & 0xFF);
    }
}

static wchar_t Lower(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? (wchar_t)(c + (L'a' - L'A')) : c;
}

bool SameHostName(const wchar_t *a, const wchar_t *b)
{
    for (; Lower(*a) == Lower(*b); a++, b++) {
        if (!*a)
            return true;
    }
    return false;
}

bool MacEquals(const unsigned char *a, const unsigned char *b)
{
    return memcmp(a, b, SAFE_RECORD_BYTES) == 0;
}
