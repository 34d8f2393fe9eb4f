// fuzz_logread.cpp: libFuzzer target for the usage dialog's reading of a month's log into its two series.
// fuzz sources: trafficlog/logparse.cpp
// Input: the mode (odd: hourly), the day byte, the size of the reads in records less one, then the month's bytes.
#include "tests/native/fuzzing.h"
#include "trafficlog/logparse.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 3)
        return 0;
    int hourly = data[0] & 1, day = (signed char)data[1];
    File month = {data + 3, size - 3, TRAFFIC_RECORD_BYTES, TRAFFIC_RECORD_BYTES * (size_t)(1 + data[2] % 16)};

    // The reference: hourly mode takes the day's records by hour (the later
    // wins), daily mode sums by day; the scale is the largest a slot held.
    double tx[SERIES_SLOTS] = {}, rx[SERIES_SLOTS] = {}, maximum = 0, scale = 0;
    month.Records([&](const unsigned char *r, size_t) {
        int slot = (signed char)r[hourly];
        if (slot < 0 || slot >= SERIES_SLOTS || (hourly && (signed char)r[0] != day))
            return;
        tx[slot] = (hourly ? 0 : tx[slot]) + Le32(r + 8);
        rx[slot] = (hourly ? 0 : rx[slot]) + Le32(r + 4);
        maximum = std::max({maximum, tx[slot], rx[slot]});
    });

    // Read as the dialog reads, a piece at a time: the same series and scale.
    Exact out(nullptr, SERIES_SLOTS * sizeof(double)), in(nullptr, SERIES_SLOTS * sizeof(double));
    TrafficLogView view = {hourly ? HOURLY_MODE : 0, day, out.as<double>(), in.as<double>(), &scale, {0}};
    month.Reads([&](const Exact &read, size_t) { AddTrafficLogBytes(&view, read.bytes, read.size); });
    PROMISE(scale == maximum && memcmp(out.bytes, tx, sizeof tx) == 0 && memcmp(in.bytes, rx, sizeof rx) == 0);
    return 0;
}
