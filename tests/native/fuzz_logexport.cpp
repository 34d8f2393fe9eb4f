// fuzz_logexport.cpp: libFuzzer target for the CSV export's reading of one month of a range.
// fuzz sources: trafficlog/logparse.cpp
// Input: From's day, To's day, flags (1: the range's last month, 2: no record read before), the size of
// the reads in records less one, then the month's bytes.
#include "tests/native/fuzzing.h"
#include "trafficlog/logparse.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 4)
        return 0;
    int fromDay = (signed char)data[0], toDay = (signed char)data[1];
    bool lastMonth = data[2] & 1, first = (data[2] & 2) != 0, wasFirst = first;
    File month = {data + 4, size - 4, TRAFFIC_RECORD_BYTES, TRAFFIC_RECORD_BYTES * (size_t)(1 + data[3] % 16)};

    // The reference: the export's first record must lie on or after From,
    // and days past To in the range's last month are left out; what is left
    // counts in the totals, and in its day when it has a slot.
    double tx[SERIES_SLOTS] = {}, rx[SERIES_SLOTS] = {}, totalTx = 0, totalRx = 0, totalOut = 0, totalIn = 0;
    month.Records([&](const unsigned char *r, size_t at) {
        int d = (signed char)r[0];
        if ((wasFirst && at == 0 && d < fromDay) || (lastMonth && d > toDay))
            return;
        totalTx += Le32(r + 8), totalRx += Le32(r + 4);
        if (d >= 0 && d < SERIES_SLOTS)
            tx[d] += Le32(r + 8), rx[d] += Le32(r + 4);
    });

    // Read in pieces as the export reads.
    Exact out(nullptr, SERIES_SLOTS * sizeof(double)), in(nullptr, SERIES_SLOTS * sizeof(double));
    TrafficExportView view = {fromDay, toDay, lastMonth, &first, out.as<double>(), in.as<double>(),
                              &totalOut, &totalIn, {0}};
    month.Reads([&](const Exact &read, size_t) { AddExportMonthBytes(&view, read.bytes, read.size); });
    PROMISE(first == (wasFirst && month.size == 0) && totalOut == totalTx && totalIn == totalRx);
    PROMISE(memcmp(out.bytes, tx, sizeof tx) == 0 && memcmp(in.bytes, rx, sizeof rx) == 0);
    return 0;
}
