// fuzz_logread.cpp: libFuzzer target for the usage dialog's reading of a month's log into its two series.
// fuzz sources: trafficlog/logparse.cpp
// Input: the mode (odd: hourly), the day byte, the size of the reads in records less one, then the month's bytes.
#include "tests/native/fuzzing.h"
#include "trafficlog/logparse.h"

namespace {

struct Series {
    Exact tx{SERIES_SLOTS * sizeof(double)}, rx{SERIES_SLOTS * sizeof(double)};
    double maximum = 0;
    double *Tx() { return reinterpret_cast<double *>(tx.bytes); }
    double *Rx() { return reinterpret_cast<double *>(rx.bytes); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 3)
        return 0;
    int mode = data[0] & 1 ? HOURLY_MODE : 0, day = (signed char)data[1];
    size_t piece = TRAFFIC_RECORD_BYTES * (1 + data[2] % 16);
    const unsigned char *file = data + 3;
    size_t length = size - 3;

    // The reference: every record as the one buffer holds it; hourly mode
    // takes the day's records by hour (the later wins), daily mode sums by day.
    double tx[SERIES_SLOTS] = {}, rx[SERIES_SLOTS] = {}, maximum = 0;
    bool hourly = mode == HOURLY_MODE, assigned[SERIES_SLOTS] = {};
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        unsigned char r[TRAFFIC_RECORD_BYTES];
        LaidRecord(file, length, at, TRAFFIC_RECORD_BYTES, r);
        int d = (signed char)r[0], slot = hourly ? (signed char)r[1] : d;
        if (slot < 0 || slot >= SERIES_SLOTS || (hourly && d != day))
            continue;
        tx[slot] = (hourly ? 0 : tx[slot]) + Le32(r + 8);
        maximum = tx[slot] > maximum ? tx[slot] : maximum;
        rx[slot] = (hourly ? 0 : rx[slot]) + Le32(r + 4);
        maximum = rx[slot] > maximum ? rx[slot] : maximum;
        assigned[slot] = true;
    }

    // Read as the dialog reads, a piece at a time, and in one piece: the same.
    Series pieces, whole;
    TrafficLogView view = {mode, day, pieces.Tx(), pieces.Rx(), &pieces.maximum, {0}};
    for (size_t start = 0; start < length; start += piece) {
        size_t n = length - start < piece ? length - start : piece;
        Exact read(file + start, n);
        AddTrafficLogBytes(&view, read.bytes, n);
    }
    TrafficLogView once = {mode, day, whole.Tx(), whole.Rx(), &whole.maximum, {0}};
    Exact all(file, length);
    AddTrafficLogBytes(&once, all.bytes, length);

    double top = 0;
    for (int i = 0; i < SERIES_SLOTS; i++) {
        PROMISE(pieces.Tx()[i] == tx[i] && pieces.Rx()[i] == rx[i]);
        PROMISE(whole.Tx()[i] == tx[i] && whole.Rx()[i] == rx[i]);
        PROMISE(assigned[i] || (tx[i] == 0 && rx[i] == 0));
        top = tx[i] > top ? tx[i] : top;
        top = rx[i] > top ? rx[i] : top;
    }
    PROMISE(pieces.maximum == maximum && whole.maximum == maximum);
    // The scale covers every bar; summed days never shrink, so in daily mode
    // it is the tallest bar itself.
    PROMISE(maximum >= top && (hourly || maximum == top));
    return 0;
}
