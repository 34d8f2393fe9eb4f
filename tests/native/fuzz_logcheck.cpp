// fuzz_logcheck.cpp: libFuzzer target for qvlog's check and repair of a damaged month's log.
// fuzz sources: tools/qvlog/logcheck.cpp trafficlog/logformat.cpp
// Input: a month's log (its first byte also picks the month).
#include <vector>

#include "tests/native/fuzzing.h"
#include "tools/qvlog/logcheck.h"

static bool Valid(const TrafficLogFields &f, int year, int month)
{
    if (year == 0)
        return f.day >= 1 && f.day <= 31 && f.hour >= 0 && f.hour <= 23;
    return IsTrafficLogSlot(year, month, f.day, f.hour);
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    // The first byte picks the month (0: none, as for a file of another name).
    int month = size ? data[0] % 13 : 0, year = month ? 2024 + (size > 1 ? data[1] % 4 : 0) : 0;
    LogCheckReport r;
    CheckTrafficLog(data, size, year, month, &r);
    if (r.tooLarge)
        return 0;

    // Records and cuts follow each other over every byte, in file order.
    size_t at = 0, record = 0, cut = 0;
    while (at < size) {
        if (record < r.records.size() && r.records[record].offset == at) {
            TrafficLogFields f;
            DecodeTrafficLogRecord(data + at, &f);
            const TrafficLogFields &g = r.records[record].fields;
            PROMISE(f.day == g.day && f.hour == g.hour && f.received == g.received && f.transmitted == g.transmitted);
            at += TRAFFIC_RECORD_BYTES;
            record++;
        } else {
            PROMISE(cut < r.cuts.size() && r.cuts[cut].offset == at);
            PROMISE(r.cuts[cut].length >= 1 && r.cuts[cut].length < TRAFFIC_RECORD_BYTES);
            at += r.cuts[cut++].length;
        }
    }
    PROMISE(at == size && record == r.records.size() && cut == r.cuts.size());

    // What it finds, against a walk of the records it split the file into.
    std::vector<size_t> range, duplicates, order;
    bool seen[32][24] = {};
    int last = -1;
    for (size_t i = 0; i < r.records.size(); i++) {
        const TrafficLogFields &f = r.records[i].fields;
        if (!Valid(f, year, month)) {
            range.push_back(i);
            continue;
        }
        if (seen[f.day][f.hour])
            duplicates.push_back(i);
        seen[f.day][f.hour] = true;
        if (f.day * 24 + f.hour < last)
            order.push_back(i);
        last = f.day * 24 + f.hour;
    }
    PROMISE(range == r.outOfRange && duplicates == r.duplicates && order == r.outOfOrder);

    // A file as the writer lays it (whole records of the month, reserved
    // bytes 0) is never split.
    bool written = size % TRAFFIC_RECORD_BYTES == 0;
    for (size_t i = 0; written && i < size; i += TRAFFIC_RECORD_BYTES) {
        TrafficLogFields f;
        DecodeTrafficLogRecord(data + i, &f);
        written = Valid(f, year, month) && data[i + 2] == 0 && data[i + 3] == 0;
    }
    if (written)
        PROMISE(r.cuts.empty() && r.records.size() == size / TRAFFIC_RECORD_BYTES);

    // A repaired file is sound but for sums that cannot be merged.
    LogRepairCounts counts;
    std::vector<unsigned char> mended = RepairTrafficLog(r, year, month, &counts);
    LogCheckReport again;
    CheckTrafficLog(mended.data(), mended.size(), year, month, &again);
    PROMISE(again.cuts.empty() && again.outOfRange.empty() && again.duplicates.size() == counts.keptApart);
    PROMISE(counts.kept + counts.merged + counts.dropped == r.records.size());
    return 0;
}
