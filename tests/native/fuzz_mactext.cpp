// fuzz_mactext.cpp: libFuzzer target for the detector list's MAC text read back as 6 bytes.
// fuzz sources: diagnostics/netbios.cpp
// Input: the text as UTF-16LE, up to a zero character.
#include <vector>

#include "diagnostics/netbios.h"
#include "tests/native/fuzzing.h"

static int Hex(wchar_t c)
{
    return c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    size_t length = 0;
    while (length < size / 2 && Le16(data + 2 * length))
        length++;
    Exact block((length + 1) * sizeof(wchar_t));
    wchar_t *text = reinterpret_cast<wchar_t *>(block.bytes);
    for (size_t i = 0; i < length; i++)
        text[i] = (wchar_t)Le16(data + 2 * i);

    Exact mac(6, 0x5A);
    bool parsed = ParseMacText(text, mac.bytes);
    // A text shorter than 17 characters is no MAC: all zero.
    PROMISE(parsed == (length >= 17));
    if (!parsed) {
        for (int k = 0; k < 6; k++)
            PROMISE(mac.bytes[k] == 0);
        return 0;
    }
    // Upper-case pairs, as the list writes them, read back exactly; the
    // separators are not looked at.
    for (int k = 0; k < 6; k++) {
        int high = Hex(text[3 * k]), low = Hex(text[3 * k + 1]);
        if (high >= 0 && low >= 0)
            PROMISE(mac.bytes[k] == high * 16 + low);
    }
    return 0;
}
