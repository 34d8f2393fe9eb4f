// fuzz_wlananswers.cpp: libFuzzer target for a desktop's Native Wifi records turned into the driver's OID values.
// fuzz sources: platform/win32/wlan_answers.cpp wireless/bssidlist.cpp
// fuzz options: -max_len=8192
// Input: the OID (first byte % 10, the last one none of the driver's), the room for the value (2 bytes),
// which records the API gave (1: connection, 2: BSS list, 4: RSSI), the RSSI (4 bytes), the connection
// record's size (2 bytes), then the connection record and the BSS list.
#include "platform/win32/wlan_answers.h"
#include "tests/native/fuzzing.h"
#include "wireless/bssidlist.h"

namespace {

const uint32_t kOids[10] = {0x0D010101, 0x0D010102, 0x0D010108, 0x0D010118, 0x0D01011B,
                            0x0D010204, 0x0D010206, 0x0D010211, 0x0D010217, 0x0D01011A};
const uint32_t kBssid = 0x0D010101, kSsid = 0x0D010102, kConfiguration = 0x0D010211, kBssidList = 0x0D010217,
               kScan = 0x0D01011A;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 10)
        return 0;
    uint32_t oid = kOids[data[0] % 10];
    uint32_t room = Le16(data + 1) % 1100;
    unsigned given = data[3];
    size_t connectionSize = Le16(data + 8), rest = size - 10;
    if (connectionSize > rest)
        connectionSize = rest;
    Exact connection(data + 10, connectionSize), list(data + 10 + connectionSize, rest - connectionSize);

    WlanAnswers a = {};
    if (given & 1) {
        a.connection = connection.bytes;
        a.connectionSize = (uint32_t)connection.size;
    }
    if (given & 2) {
        a.bssList = list.bytes;
        a.bssListSize = (uint32_t)list.size;
    }
    a.hasRssi = (given & 4) != 0;
    a.rssi = (int32_t)Le32(data + 4);

    PROMISE((WlanAnswersNeeded(oid) == 0) == (oid == kScan));
    Exact value(room, 0x5A);
    uint32_t n = WlanOidValue(a, oid, value.bytes, room);
    PROMISE(n <= room);
    if (oid == kScan) {
        PROMISE(n == 0);
    } else if (oid == kBssidList) {
        // As many whole entries as the API's list holds, whatever its count
        // says, or nothing when they do not fit; the driver's decoder reads
        // them all back.
        uint32_t entries = 0;
        if (a.bssList && list.size >= WLAN_BSS_LIST_ENTRIES) {
            uint32_t count = Le32(list.bytes + 4), fit = (uint32_t)(list.size - WLAN_BSS_LIST_ENTRIES) / WLAN_BSS_ENTRY_SIZE;
            entries = count < fit ? count : fit;
        }
        bool fits = a.bssList && room >= 4 && entries <= (room - 4) / 104;
        PROMISE(n == (fits ? 4 + 104 * entries : 0));
        if (n) {
            PROMISE(Le32(value.bytes) == entries);
            BssidEntry decoded[16];
            PROMISE(DecodeBssidList(value.bytes, n, decoded, 16) == (int)(entries < 16 ? entries : 16));
            for (uint32_t i = 0; i < entries && i < 16; i++) {
                const unsigned char *bss = list.bytes + WLAN_BSS_LIST_ENTRIES + i * WLAN_BSS_ENTRY_SIZE;
                PROMISE(memcmp(decoded[i].mac, bss + WLAN_BSS_BSSID, 6) == 0);
                PROMISE(decoded[i].ssidLength <= BSSID_SSID_BYTES);
                PROMISE(decoded[i].dsConfig == Le32(bss + WLAN_BSS_FREQUENCY));
                // The first eight rates of the set's 126 that a byte holds,
                // the basic flag moved from bit 15 to bit 7.
                unsigned char rates[8] = {0};
                uint32_t count = Le32(bss + WLAN_BSS_RATE_SET) / 2, put = 0;
                for (uint32_t r = 0; r < count && r < 126 && put < 8; r++) {
                    unsigned v = Le16(bss + WLAN_BSS_RATE_SET + 4 + 2 * r);
                    if ((v & 0x7FFF) != 0 && (v & 0x7FFF) <= 0x7F)
                        rates[put++] = (unsigned char)((v & 0x7F) | (v & 0x8000 ? 0x80 : 0));
                }
                PROMISE(memcmp(decoded[i].rates, rates, 8) == 0);
            }
        }
    } else {
        // The link's values need a connected interface's whole record.
        bool connected = a.connection && connection.size >= WLAN_CONNECTION_SIZE &&
                         Le32(connection.bytes + WLAN_CONNECTION_STATE) == 1;
        if (!connected)
            PROMISE(n == 0);
        if (oid == kBssid)
            PROMISE(n == 0 || n == 6);
        else if (oid == kSsid)
            PROMISE(n == 0 || (n == 36 && Le32(value.bytes) <= 32));
        else if (oid == kConfiguration)
            PROMISE(n == 0 || (n == 32 && Le32(value.bytes) == 32));
        else
            PROMISE(n == 0 || n == 4);
    }
    return 0;
}
