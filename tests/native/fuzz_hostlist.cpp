// fuzz_hostlist.cpp: libFuzzer target for the ping tool's host list: record text, the search for a host, a new record.
// fuzz sources: diagnostics/listparse.cpp
// Input: the host's length in characters, the host as UTF-16LE, then hosts.dat's bytes.
#include "diagnostics/listparse.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    size_t chars = std::min<size_t>(data[0], (size - 1) / 2);
    Exact block(nullptr, (chars + 1) * sizeof(wchar_t)), text(nullptr, HOST_RECORD_CHARS * sizeof(wchar_t), 0x5A);
    wchar_t *host = block.as<wchar_t>();
    for (size_t i = 0; i < chars; i++)
        host[i] = (wchar_t)Le16(data + 1 + 2 * i);
    auto fold = [](uint32_t c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; };

    // Each record as the tool reads it: its text ends inside its 100
    // characters, and is the host when the record's characters, up to its
    // terminator or its 99th, are the host's but for the case of A-Z.
    File{data + 1 + 2 * chars, size - 1 - 2 * chars, HOST_RECORD_BYTES, 0}.Records([&](auto r, size_t) {
        HostRecordText(r, text.as<wchar_t>());
        Ended(text.as<wchar_t>(), HOST_RECORD_CHARS);
        size_t i = 0;
        while (i < HOST_RECORD_CHARS - 1 && Le16(r + 2 * i) && fold(Le16(r + 2 * i)) == fold(host[i]))
            i++;
        bool same = (i == HOST_RECORD_CHARS - 1 || !Le16(r + 2 * i)) && !host[i];
        PROMISE(SameHostName(text.as<wchar_t>(), host) == same);
    });

    // The record AddHost appends reads back as the host, cut to 99 characters.
    Exact fresh(nullptr, HOST_RECORD_BYTES, 0x5A);
    HostRecordBytes(host, fresh.bytes);
    HostRecordText(fresh.bytes, text.as<wchar_t>());
    Ended(text.as<wchar_t>(), HOST_RECORD_CHARS);
    PROMISE(wcsncmp(text.as<wchar_t>(), host, HOST_RECORD_CHARS - 1) == 0);
    return 0;
}
