// fuzz_safelist.cpp: libFuzzer target for the intruder detector's safe list: the lookup and the removal of a MAC.
// fuzz sources: diagnostics/listparse.cpp
// Input: the MAC's 6 bytes, then slist.dat's bytes.
#include <vector>

#include "diagnostics/listparse.h"
#include "tests/native/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < SAFE_RECORD_BYTES)
        return 0;
    Exact mac(data, SAFE_RECORD_BYTES);
    const unsigned char *file = data + SAFE_RECORD_BYTES;
    size_t length = size - SAFE_RECORD_BYTES;

    // Read as the detector reads, 6 bytes at a time into one buffer; the
    // removal writes out every record that is not the MAC.
    unsigned char record[SAFE_RECORD_BYTES] = {0};
    bool contained = false, expected = false;
    size_t records = 0, dropped = 0;
    std::vector<unsigned char> kept;
    for (size_t at = 0; at < length; at += SAFE_RECORD_BYTES, records++) {
        size_t n = length - at < SAFE_RECORD_BYTES ? length - at : SAFE_RECORD_BYTES;
        memcpy(record, file + at, n);
        Exact laid(record, SAFE_RECORD_BYTES);
        bool equal = MacEquals(laid.bytes, mac.bytes);
        PROMISE(equal == MacEquals(mac.bytes, laid.bytes));

        // A short last record is compared over the bytes of the one before.
        unsigned char reference[SAFE_RECORD_BYTES];
        LaidRecord(file, length, at, SAFE_RECORD_BYTES, reference);
        PROMISE(equal == (memcmp(reference, data, SAFE_RECORD_BYTES) == 0));
        contained = contained || equal;
        expected = expected || memcmp(reference, data, SAFE_RECORD_BYTES) == 0;
        if (equal)
            dropped++;
        else
            kept.insert(kept.end(), laid.bytes, laid.bytes + SAFE_RECORD_BYTES);
    }
    PROMISE(contained == expected);
    // What the removal leaves holds whole records only, none of them the MAC.
    PROMISE(kept.size() == SAFE_RECORD_BYTES * (records - dropped));
    for (size_t at = 0; at < kept.size(); at += SAFE_RECORD_BYTES)
        PROMISE(!MacEquals(&kept[at], mac.bytes));
    return 0;
}
