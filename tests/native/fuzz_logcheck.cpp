// fuzz_logcheck.cpp: libFuzzer target for the log check and repair and the dialog's parser, natively.
// fuzz sources: tools/qvlog/logcheck.cpp trafficlog/logformat.cpp trafficlog/logparse.cpp
// Input: a month's log (its first byte also picks the month).
#include <stdlib.h>

#include "tools/qvlog/logcheck.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    // The first byte picks the month (0: none, as for a file of another name).
    int month = size ? data[0] % 13 : 0, year = month ? 2024 + (size > 1 ? data[1] % 4 : 0) : 0;
    LogCheckReport r;
    CheckTrafficLog(data, size, year, month, &r);
    size_t covered = r.records.size() * TRAFFIC_RECORD_BYTES;
    for (size_t i = 0; i < r.cuts.size(); i++)
        covered += r.cuts[i].length;
    if (!r.tooLarge && covered != size)
        abort();   // every byte is a record's or a cut's

    LogRepairCounts counts;
    std::vector<unsigned char> mended = RepairTrafficLog(r, year, month, &counts);
    LogCheckReport again;
    CheckTrafficLog(mended.data(), mended.size(), year, month, &again);
    if (!again.cuts.empty() || !again.outOfRange.empty() || again.duplicates.size() > counts.keptApart)
        abort();   // a repaired file is sound but for sums that cannot be merged

    double tx[SERIES_SLOTS], rx[SERIES_SLOTS], maximum = 0;
    for (int mode = 0; mode < 2; mode++) {
        TrafficLogView view = {mode, size ? (signed char)data[0] : 0, tx, rx, &maximum, {0}};
        AddTrafficLogBytes(&view, data, size);
    }
    return 0;
}
