// fuzz_logcheck.cpp: libFuzzer target for qvlog's check and repair of a damaged month's log.
// fuzz sources: tools/qvlog/logcheck.cpp trafficlog/logformat.cpp
// Input: a month's log (its first byte also picks the month).
#include "tests/native/fuzzing.h"
#include "tools/qvlog/logcheck.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    // The first byte picks the month (0: none, as for a file of another name).
    int month = size ? data[0] % 13 : 0, year = month ? 2024 + (size > 1 ? data[1] % 4 : 0) : 0;
    // Without a month any day 1-31 is one, as in January.
    auto valid = [&](int d, int h) { return IsTrafficLogSlot(year ? year : 2024, month ? month : 1, d, h); };
    LogCheckReport r;
    CheckTrafficLog(data, size, year, month, &r);
    if (r.tooLarge)
        return 0;

    // Records and cuts of 1-11 bytes follow each other over every byte, in
    // file order; what it reports is what a walk of those records finds.
    size_t at = 0, record = 0, cut = 0;
    std::vector<size_t> range, duplicates, order;
    int seen[32 * 24] = {};
    int last = -1;
    while (at < size) {
        if (record < r.records.size() && r.records[record].offset == at) {
            TrafficLogFields f;
            DecodeTrafficLogRecord(data + at, &f);
            PROMISE(memcmp(&f, &r.records[record].fields, sizeof f) == 0);
            int slot = valid(f.day, f.hour) ? f.day * 24 + f.hour : -1;
            if (slot < 0)
                range.push_back(record);
            if (slot >= 0 && seen[slot]++)
                duplicates.push_back(record);
            if (slot >= 0 && slot < last)
                order.push_back(record);
            last = slot < 0 ? last : slot;
            at += TRAFFIC_RECORD_BYTES, record++;
        } else {
            PROMISE(cut < r.cuts.size() && r.cuts[cut].offset == at);
            PROMISE(r.cuts[cut].length >= 1 && r.cuts[cut].length < TRAFFIC_RECORD_BYTES);
            at += r.cuts[cut++].length;
        }
    }
    PROMISE(at == size && record == r.records.size() && cut == r.cuts.size());
    PROMISE(range == r.outOfRange && duplicates == r.duplicates && order == r.outOfOrder);

    // A file as the writer lays it (whole records of the month, reserved bytes 0) is never split.
    bool written = size % TRAFFIC_RECORD_BYTES == 0;
    for (size_t i = 0; written && i < size; i += TRAFFIC_RECORD_BYTES)
        written = valid((signed char)data[i], (signed char)data[i + 1]) && !data[i + 2] && !data[i + 3];
    PROMISE(!written || (r.cuts.empty() && r.records.size() == size / TRAFFIC_RECORD_BYTES));

    // A repaired file is sound but for sums that cannot be merged.
    LogRepairCounts counts;
    std::vector<unsigned char> mended = RepairTrafficLog(r, year, month, &counts);
    LogCheckReport again;
    CheckTrafficLog(mended.data(), mended.size(), year, month, &again);
    PROMISE(again.cuts.empty() && again.outOfRange.empty() && again.duplicates.size() == counts.keptApart);
    PROMISE(counts.kept + counts.merged + counts.dropped == r.records.size());
    return 0;
}
