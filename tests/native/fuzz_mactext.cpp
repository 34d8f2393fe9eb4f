// fuzz_mactext.cpp: libFuzzer target for the detector list's MAC text read back as 6 bytes.
// fuzz sources: diagnostics/netbios.cpp
// Input: the text as UTF-16LE, up to a zero character.
#include "diagnostics/netbios.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    size_t length = 0;
    while (length < size / 2 && Le16(data + 2 * length))
        length++;
    Exact text(nullptr, (length + 1) * sizeof(wchar_t)), mac(nullptr, 6, 0x5A);
    for (size_t i = 0; i < length; i++)
        text.as<wchar_t>()[i] = (wchar_t)Le16(data + 2 * i);
    // No MAC, all zero, from fewer than 17 characters.
    PROMISE(ParseMacText(text.as<wchar_t>(), mac.bytes) == (length >= 17));
    PROMISE(length >= 17 || std::count(mac.bytes, mac.bytes + 6, 0) == 6);
    return 0;
}
