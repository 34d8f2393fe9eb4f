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
    bool lastMonth = data[2] & 1, first = (data[2] & 2) != 0;
    size_t piece = TRAFFIC_RECORD_BYTES * (1 + data[3] % 16);
    const unsigned char *file = data + 4;
    size_t length = size - 4;

    // What the chart reads of the same bytes, day by day: every record.
    Exact chartTx(SERIES_SLOTS * sizeof(double)), chartRx(SERIES_SLOTS * sizeof(double));
    double chartMax = 0;
    TrafficLogView chart = {0, 0, reinterpret_cast<double *>(chartTx.bytes),
                            reinterpret_cast<double *>(chartRx.bytes), &chartMax, {0}};
    Exact all(file, length);
    AddTrafficLogBytes(&chart, all.bytes, length);

    // The export should see the chart's days less the records its range
    // leaves out: the first record of the export outside From..To, and days
    // past To in the range's last month.
    double leftTx[SERIES_SLOTS] = {}, leftRx[SERIES_SLOTS] = {}, totalTx = 0, totalRx = 0;
    bool firstRef = first;
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        unsigned char r[TRAFFIC_RECORD_BYTES];
        LaidRecord(file, length, at, TRAFFIC_RECORD_BYTES, r);
        int d = (signed char)r[0];
        bool out = firstRef ? d < fromDay || (lastMonth && d > toDay) : lastMonth && d > toDay;
        firstRef = false;
        if (out) {
            if (d >= 0 && d < SERIES_SLOTS) {
                leftTx[d] += Le32(r + 8);
                leftRx[d] += Le32(r + 4);
            }
            continue;
        }
        totalTx += Le32(r + 8);
        totalRx += Le32(r + 4);
    }

    Exact tx(SERIES_SLOTS * sizeof(double)), rx(SERIES_SLOTS * sizeof(double));
    double totalOut = 0, totalIn = 0;
    TrafficExportView view = {fromDay, toDay, lastMonth, &first, reinterpret_cast<double *>(tx.bytes),
                              reinterpret_cast<double *>(rx.bytes), &totalOut, &totalIn, {0}};
    for (size_t start = 0; start < length; start += piece) {
        size_t n = length - start < piece ? length - start : piece;
        Exact read(file + start, n);
        AddExportMonthBytes(&view, read.bytes, n);
    }
    PROMISE(first == firstRef);
    PROMISE(totalOut == totalTx && totalIn == totalRx);
    const double *chartOut = reinterpret_cast<double *>(chartTx.bytes), *chartIn = reinterpret_cast<double *>(chartRx.bytes);
    for (int d = 0; d < SERIES_SLOTS; d++) {
        PROMISE(view.transmitted[d] + leftTx[d] == chartOut[d]);
        PROMISE(view.received[d] + leftRx[d] == chartIn[d]);
    }
    return 0;
}
