// fuzz_hostlist.cpp: libFuzzer target for the ping tool's host list: record text, the search for a host, a new record.
// fuzz sources: diagnostics/listparse.cpp
// Input: the host's length in characters, the host as UTF-16LE, then hosts.dat's bytes.
#include <vector>

#include "diagnostics/listparse.h"
#include "tests/native/fuzzing.h"

namespace {

wchar_t Fold(wchar_t c)
{
    return c >= 'A' && c <= 'Z' ? c + 32 : c;
}

bool ReferenceSame(const wchar_t *a, const wchar_t *b)
{
    size_t i = 0;
    for (; a[i] && b[i]; i++)
        if (Fold(a[i]) != Fold(b[i]))
            return false;
    return a[i] == b[i];
}

// A text of HOST_RECORD_CHARS characters in a block of its own.
struct Text {
    Exact block{HOST_RECORD_CHARS * sizeof(wchar_t), 0x5A};
    wchar_t *chars() { return reinterpret_cast<wchar_t *>(block.bytes); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    size_t chars = data[0];
    if (1 + 2 * chars > size)
        chars = (size - 1) / 2;
    std::vector<wchar_t> host(chars + 1, 0);
    for (size_t i = 0; i < chars; i++)
        host[i] = (wchar_t)Le16(data + 1 + 2 * i);
    const unsigned char *file = data + 1 + 2 * chars;
    size_t length = size - 1 - 2 * chars;

    // Read as the tool reads, a record at a time into one buffer.
    unsigned char record[HOST_RECORD_BYTES] = {0};
    long found = -1, expected = -1;
    for (size_t at = 0; at < length; at += HOST_RECORD_BYTES) {
        size_t n = length - at < HOST_RECORD_BYTES ? length - at : HOST_RECORD_BYTES;
        memcpy(record, file + at, n);
        Exact laid(record, HOST_RECORD_BYTES);
        Text text;
        HostRecordText(laid.bytes, text.chars());
        // Terminated inside its 100 characters: each one the record's, up to
        // the record's own terminator or the last character.
        size_t k = 0;
        while (k < HOST_RECORD_CHARS && text.chars()[k])
            k++;
        PROMISE(k < HOST_RECORD_CHARS);
        for (size_t i = 0; i < k; i++)
            PROMISE(text.chars()[i] == (wchar_t)Le16(record + 2 * i));
        PROMISE(k == HOST_RECORD_CHARS - 1 || Le16(record + 2 * k) == 0);

        bool same = SameHostName(text.chars(), host.data());
        PROMISE(same == SameHostName(host.data(), text.chars()));
        PROMISE(same == ReferenceSame(text.chars(), host.data()));
        PROMISE(SameHostName(text.chars(), text.chars()));
        if (same && found < 0)
            found = (long)(at / HOST_RECORD_BYTES);
        if (ReferenceSame(text.chars(), host.data()) && expected < 0)
            expected = (long)(at / HOST_RECORD_BYTES);
    }
    PROMISE(found == expected);

    // The record AddHost appends reads back as the host, cut to 99 characters.
    Exact fresh(HOST_RECORD_BYTES, 0x5A);
    HostRecordBytes(host.data(), fresh.bytes);
    Text back;
    HostRecordText(fresh.bytes, back.chars());
    size_t k = 0;
    while (k < HOST_RECORD_CHARS - 1 && host[k])
        k++;
    for (size_t i = 0; i < k; i++)
        PROMISE(back.chars()[i] == host[i]);
    PROMISE(back.chars()[k] == 0);
    for (size_t i = 2 * k; i < HOST_RECORD_BYTES; i++)
        PROMISE(fresh.bytes[i] == 0);
    return 0;
}
