// fuzz_safelist.cpp: libFuzzer target for the intruder detector's safe list: the lookup and the removal of a MAC.
// fuzz sources: diagnostics/listparse.cpp
// Input: the MAC's 6 bytes, then slist.dat's bytes.
#include "diagnostics/listparse.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < SAFE_RECORD_BYTES)
        return 0;
    Exact mac(data, SAFE_RECORD_BYTES);
    // Each record as the detector reads it is the MAC exactly when its 6 bytes are.
    File{data + SAFE_RECORD_BYTES, size - SAFE_RECORD_BYTES, SAFE_RECORD_BYTES, 0}.Records([&](auto r, size_t) {
        PROMISE(MacEquals(r, mac.bytes) == (memcmp(r, data, SAFE_RECORD_BYTES) == 0));
    });
    return 0;
}
