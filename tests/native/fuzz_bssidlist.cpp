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
    Exact list(data + 1, size - 1), room(nullptr, max * sizeof(BssidEntry));
    int n = DecodeBssidList(list.bytes, (uint32_t)list.size, room.as<BssidEntry>(), max);
    // Within the room, each entry at least its fixed part, its SSID at most 32 bytes.
    PROMISE(n >= 0 && n <= max && (n == 0 || list.size >= 4 + BSSID_ENTRY_MIN_BYTES * (size_t)n));
    for (int i = 0; i < n; i++)
        PROMISE(room.as<BssidEntry>()[i].ssidLength <= BSSID_SSID_BYTES);
    // The same bytes as the SSID query's answer, a length as the driver wrote
    // it and 32 bytes: as text, at most those, ended inside 33 bytes.
    Exact answer(nullptr, 4 + BSSID_SSID_BYTES), text(nullptr, BSSID_SSID_BYTES + 1, 0x5A);
    memcpy(answer.bytes, list.bytes, std::min(list.size, answer.size));
    SsidText(answer.bytes + 4, Le32(answer.bytes), text.as<char>());
    size_t k = Ended(text.as<char>(), BSSID_SSID_BYTES + 1);
    PROMISE(k <= Le32(answer.bytes) && memcmp(text.bytes, answer.bytes + 4, k) == 0);
    return 0;
}
