// logparse.h: a month's log records summed into a chart's series; no Windows header, so it also builds natively.
#pragma once

#include <stddef.h>

#define HOURLY_MODE 1            // any other mode is daily
#define SERIES_SLOTS 32          // hours 0-23 or days 1-31, indexed directly
#define TRAFFIC_RECORD_BYTES 12

// One reading of a month's log: where its records go, and the last record
// read, which the next bytes are laid over.
struct TrafficLogView {
    int mode, day;
    double *transmitted, *received;    // SERIES_SLOTS each, the caller's
    double *maximum;                   // the largest single slot of either
    unsigned char record[TRAFFIC_RECORD_BYTES];   // zeroed before the first read
};

// Counts the bytes of one read of the log, 12 to a record. A short last
// record keeps the bytes of the record before it behind its own, as one read
// buffer used for the whole file leaves them. Hourly mode assigns the records
// of `day` by hour (the later of two wins); daily mode sums every record into
// its day. Slots outside 0-31 are skipped. Nothing is reset here.
void AddTrafficLogBytes(TrafficLogView *view, const unsigned char *bytes, size_t length);
