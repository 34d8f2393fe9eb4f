// wireless_test.cpp: the signal query, channels, and the driver answers' decoders.
#include "tests/support.h"
#include "platform/fake/fake_wireless.h"
#include "wireless/bssidlist.h"
#include "wireless/wireless.h"

namespace {

typedef std::vector<BYTE> Bytes;

class Wireless : public DeviceTest {};

TEST_F(Wireless, SignalLevelAndHistoryByWhatTheDriverAnswers)
{
    const struct { const char *what; bool present, bound, associated; int result, dbm, newest; } cases[] = {
        {"no driver", false, true, true, 0, NO_SIGNAL, NO_SIGNAL},
        {"no adapter bound", true, false, true, 0, NO_SIGNAL, NO_SIGNAL},
        // Not associated: the strip shows no signal, the history keeps the level.
        {"not associated", true, true, false, 1, NO_SIGNAL, -63},
        {"associated", true, true, true, 1, -63, -63},
    };
    for (auto &c : cases) {
        fake::ResetWireless();
        fake::SetWirelessAdapter(c.bound ? L"TIACXWLN1" : L"");
        fake::g_wireless.present = c.present;
        fake::SetOidDword(OID_802_11_RSSI, (DWORD)-63);
        if (c.associated)
            fake::SetOidAnswer(OID_802_11_BSSID, "\x00\x0F\x66\x12\x34\x56", 6);
        for (int i = 0; i < SIGNAL_HISTORY_SIZE; i++)
            g_item.signalHistory[i] = i;
        EXPECT_EQ(c.result, QuerySignal()) << c.what;
        EXPECT_EQ(c.dbm, g_item.signalDbm) << c.what;
        // Moved one place towards the oldest, the newest at the end.
        const int *h = g_item.signalHistory, last = SIGNAL_HISTORY_SIZE - 1;
        EXPECT_TRUE(h[0] == 1 && h[last - 1] == last && h[last] == c.newest) << c.what << ": " << h[last];
        EXPECT_EQ(fake::g_wireless.opens, fake::g_wireless.closes) << c.what;
    }
}

TEST(Channels, ByKilohertzOrHundredsOfKilohertz)
{
    // Channels 1 and 14 on the other scale, and 14 in kHz, are read by the card and scanner tests.
    EXPECT_EQ(1, ChannelFromFrequency(2412000));
    for (DWORD frequency : {2407000, 2484000, 2437001, 243700, 0})   // off the band, or on neither scale
        EXPECT_EQ(NO_CHANNEL, ChannelFromFrequency(frequency)) << frequency;
}

// The bytes placed right before an unreadable page (all test buffers fit in one):
// a decoder that reads one byte past them faults.
const BYTE *Guarded(const Bytes &bytes)
{
    static BYTE *pages = static_cast<BYTE *>(VirtualAlloc(nullptr, 8192, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    DWORD old;
    VirtualProtect(pages + 4096, 4096, PAGE_NOACCESS, &old);
    return static_cast<BYTE *>(memcpy(pages + 4096 - bytes.size(), bytes.data(), bytes.size()));
}

Bytes Put(Bytes b, size_t at, DWORD v)
{
    memcpy(&b[at], &v, 4);
    return b;
}

// A list that says it holds `count` entries, and these.
Bytes List(DWORD count, std::initializer_list<Bytes> entries)
{
    Bytes b = Put(Bytes(4), 0, count);
    for (auto &e : entries)
        b.insert(b.end(), e.begin(), e.end());
    return b;
}

// An access point "home" of `length` bytes, its BSSID ending in `last`.
Bytes Entry(DWORD length, BYTE last)
{
    Bytes e = Put(Put(Put(Put(Put(Bytes(length, 0), 0, length), 12, 4), 52, (DWORD)-48), 72, 2437000), 92, 1);
    memcpy(&e[4], "\x00\x11\x22\x33\x44", 5);
    e[9] = last;
    memcpy(&e[16], "home", 4);
    memcpy(&e[96], "\x02\x04\x0B\x16", 4);
    return e;
}

int Decode(const Bytes &bytes, BssidEntry *out, int max = 8)
{
    return DecodeBssidList(Guarded(bytes), (DWORD)bytes.size(), out, max);
}

TEST(BssidList, DecodesEntriesAtOddLengthsAndSurvivesWhatTheirLengthsSay)
{
    // The second entry carries information elements and is odd: the third starts unaligned.
    BssidEntry e[8] = {};
    ASSERT_EQ(3, Decode(List(3, {Entry(104, 1), Entry(131, 2), Entry(104, 3)}), e));
    EXPECT_EQ(0, memcmp(e[0].mac, "\x00\x11\x22\x33\x44\x01", 6));
    EXPECT_EQ("home", std::string((const char *)e[2].ssid, e[2].ssidLength));
    EXPECT_EQ((std::vector<DWORD>{(DWORD)-48, 2437000, 1, 3}),
              (std::vector<DWORD>{(DWORD)e[2].rssi, e[2].dsConfig, e[2].infrastructureMode, e[2].mac[5]}));

    const Bytes good = Entry(104, 1);
    const struct { const char *what; Bytes bytes; int max, decoded; } cases[] = {
        {"a count beyond the entries", List(50, {good}), 8, 1},
        {"a length of 0 gives no step", List(3, {good, Put(good, 0, 0), good}), 8, 1},
        {"a length past the end", List(2, {good, Put(good, 0, 105)}), 8, 1},
        {"a length of 2^32-1", List(1, {Put(good, 0, 0xFFFFFFFF)}), 8, 0},
        {"too short for its fields: stepped over", List(3, {good, Put(Bytes(20), 0, 20), good}), 8, 2},
        {"a length cut short", List(2, {good, {104, 0}}), 8, 1},
        {"fewer bytes than a count", {1, 0}, 8, 0},
        {"room for fewer entries", List(2, {good, good}), 1, 1},
    };
    for (auto &c : cases)
        EXPECT_EQ(c.decoded, Decode(c.bytes, e, c.max)) << c.what;
    ASSERT_EQ(1, Decode(List(1, {Put(good, 12, 200)}), e, 1));   // an SSID longer than its field
    EXPECT_EQ((DWORD)BSSID_SSID_BYTES, e[0].ssidLength);
}

TEST(BindingName, StaysInsideTheAnswerAndTheCallersRoom)
{
    // A record pointing at `length` bytes at `offset`, "WLAN1" there as far as it fits.
    auto name = [](DWORD offset, DWORD length, size_t size, int chars = WIRELESS_NAME_CHARS) {
        Bytes b = Put(Put(Bytes(size), 4, offset), 8, length);
        for (size_t i = 0; i < 10 && offset + i < size; i++)
            b[offset + i] = i % 2 ? 0 : "WLAN1"[i / 2];
        WCHAR out[WIRELESS_NAME_CHARS + 1];
        BindingNameFromRecord(Guarded(b), (DWORD)size, out, chars);
        return std::wstring(out);
    };
    EXPECT_EQ(L"WLA", name(20, 1000, 26));      // cut where the answer ends
    EXPECT_EQ(L"WL", name(20, 5, 64));          // half a character is dropped
    EXPECT_EQ(L"", name(64, 12, 64));           // points past the end
    EXPECT_EQ(L"", name(8, 4, 12));             // shorter than the record
    EXPECT_EQ(L"WLA", name(20, 12, 64, 4));     // the caller's room
}

} // namespace
