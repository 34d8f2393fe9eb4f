// fuzz_bssidlist.cpp: libFuzzer target for the driver's access-point list and SSID text, of its entries and of the SSID answer.
// fuzz sources: wireless/bssidlist.cpp
// Input: the room the caller has, in entries (first byte % 12), then the list as the driver answers it.
#include "tests/native/fuzzing.h"
#include "wireless/bssidlist.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    int max = data[0] % 12;
    Exact list(data + 1, size - 1);
    Exact room(max * sizeof(BssidEntry));
    BssidEntry *entries = reinterpret_cast<BssidEntry *>(room.bytes);
    int n = DecodeBssidList(list.bytes, (uint32_t)list.size, entries, max);
    PROMISE(n >= 0 && n <= max);

    // The reference walk: count, then entries each stepping by its own
    // length; one too short for the fixed part is stepped over.
    const unsigned char *p = list.size >= 4 ? data + 1 : nullptr;
    uint32_t count = p ? Le32(p) : 0, at = 4;
    int expected = 0;
    for (uint32_t i = 0; p && i < count && expected < max; i++) {
        if (list.size - at < 4)
            break;
        uint32_t length = Le32(p + at);
        if (length == 0 || length > list.size - at)
            break;
        if (length >= BSSID_ENTRY_MIN_BYTES) {
            const BssidEntry &e = entries[expected++];
            PROMISE(expected <= n);
            uint32_t ssidLength = Le32(p + at + 12);
            PROMISE(memcmp(e.mac, p + at + 4, 6) == 0);
            PROMISE(e.ssidLength == (ssidLength < BSSID_SSID_BYTES ? ssidLength : BSSID_SSID_BYTES));
            PROMISE(e.rssi == (int32_t)Le32(p + at + 52) && e.dsConfig == Le32(p + at + 72));
            PROMISE(e.infrastructureMode == Le32(p + at + 92) && memcmp(e.rates, p + at + 96, 8) == 0);

            // Its SSID as text: terminated inside its 33 bytes, the SSID's own bytes.
            Exact ssid(BSSID_SSID_BYTES + 1, 0x5A);
            SsidText(e.ssid, e.ssidLength, reinterpret_cast<char *>(ssid.bytes));
            size_t k = strnlen(reinterpret_cast<char *>(ssid.bytes), BSSID_SSID_BYTES + 1);
            PROMISE(k <= e.ssidLength && memcmp(ssid.bytes, p + at + 16, k) == 0);
        }
        at += length;
    }
    PROMISE(expected == n);

    // The same bytes as the SSID query's answer, a length and 32 bytes, the
    // length as the driver wrote it.
    unsigned char field[4 + BSSID_SSID_BYTES] = {0};
    memcpy(field, data + 1, size - 1 < sizeof field ? size - 1 : sizeof field);
    Exact answer(field, sizeof field), text(BSSID_SSID_BYTES + 1, 0x5A);
    SsidText(answer.bytes + 4, Le32(answer.bytes), reinterpret_cast<char *>(text.bytes));
    size_t k = strnlen(reinterpret_cast<char *>(text.bytes), BSSID_SSID_BYTES + 1);
    PROMISE(k <= Le32(field) && k <= BSSID_SSID_BYTES && memcmp(text.bytes, field + 4, k) == 0);
    return 0;
}
