// fuzz_wlananswers.cpp: libFuzzer target for a desktop's Native Wifi records turned into the driver's OID values.
// fuzz sources: platform/win32/wlan_answers.cpp wireless/bssidlist.cpp
// fuzz options: -max_len=8192
// Input: the OID (first byte % 10, the last one none of the driver's), the room for the value (2 bytes),
// which records the API gave (1: connection, 2: BSS list, 4: RSSI), the RSSI (4 bytes), the connection
// record's size (2 bytes), then the connection record and the BSS list.
#include "platform/win32/wlan_answers.h"
#include "tests/native/fuzzing.h"
#include "wireless/bssidlist.h"

static const uint32_t kOids[10] = {0x0D010101, 0x0D010102, 0x0D010108, 0x0D010118, 0x0D01011B,
                                   0x0D010204, 0x0D010206, 0x0D010211, 0x0D010217, 0x0D01011A};
static const uint32_t kBssidList = 0x0D010217, kScan = 0x0D01011A;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 10)
        return 0;
    uint32_t oid = kOids[data[0] % 10], room = Le16(data + 1) % 1100;
    size_t rest = size - 10, connectionSize = std::min<size_t>(Le16(data + 8), rest);
    Exact connection(data + 10, connectionSize), list(data + 10 + connectionSize, rest - connectionSize);
    WlanAnswers a = {data[3] & 1 ? connection.bytes : nullptr, (uint32_t)connection.size,
                     data[3] & 2 ? list.bytes : nullptr, (uint32_t)list.size, !!(data[3] & 4), (int32_t)Le32(data + 4)};
    Exact value(nullptr, room, 0x5A);
    uint32_t n = WlanOidValue(a, oid, value.bytes, room);
    // Every value fits its room; a scan request is no value.
    PROMISE(n <= room && (oid != kScan || n == 0));
    if (oid != kBssidList || n == 0)
        return 0;
    // The list: whole entries, no more than the API's list holds whatever
    // its count says, which the driver's decoder reads back.
    uint32_t entries = Le32(value.bytes);
    BssidEntry decoded[16];
    PROMISE(n == 4 + 104 * entries &&
            (entries == 0 || list.size >= WLAN_BSS_LIST_ENTRIES + WLAN_BSS_ENTRY_SIZE * (size_t)entries));
    PROMISE(DecodeBssidList(value.bytes, n, decoded, 16) == (int)std::min<uint32_t>(entries, 16));
    return 0;
}
