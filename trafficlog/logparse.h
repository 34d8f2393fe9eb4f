// logparse.h: a month's log records as the chart, the export and the writer read them; no Windows header, so it also builds natively.
#pragma once

#include <stddef.h>

#define HOURLY_MODE 1            // any other mode is daily
#define SERIES_SLOTS 32          // hours 0-23 or days 1-31, indexed directly
#define TRAFFIC_RECORD_BYTES 12

// Every reader of a month walks each read 12 bytes at a time through one
// record buffer kept for the whole file: a short last record keeps the bytes
// of the record before it behind its own.

// One reading of a month's log: where its records go, and the last record
// read, which the next bytes are laid over.
struct TrafficLogView {
    int mode, day;
    double *transmitted, *received;    // SERIES_SLOTS each, the caller's
    double *maximum;                   // the largest single slot of either
    unsigned char record[TRAFFIC_RECORD_BYTES];   // zeroed before the first read
};

// Counts the bytes of one read of the log. Hourly mode assigns the records
// of `day` by hour (the later of two wins); daily mode sums every record into
// its day. Slots outside 0-31 are skipped. Nothing is reset here.
void AddTrafficLogBytes(TrafficLogView *view, const unsigned char *bytes, size_t length);

// The CSV export's reading of one month of a range. The first record the
// whole export reads must lie on or after `fromDay` (and in the range's last
// month on or before `toDay` too); after it, only days past `toDay` in the
// last month are left out. A record that passes counts in the month's totals,
// and in its day's slot when the day is 0-31.
struct TrafficExportView {
    int fromDay, toDay;
    bool lastMonth;
    bool *firstRecord;                 // the whole export's: true until it reads one
    double *transmitted, *received;    // SERIES_SLOTS each, the caller's
    double *totalOut, *totalIn;
    unsigned char record[TRAFFIC_RECORD_BYTES];   // zeroed before the month's first read
};

void AddExportMonthBytes(TrafficExportView *view, const unsigned char *bytes, size_t length);

// The writer's search of one read of the month for the record of `day` and
// `hour` (signed bytes, as every reader takes them), through `record`, the
// search's one record buffer, zeroed before its first read. Returns the
// offset in `bytes` of the first record that names them, which `record` then
// holds (a cut tail over the record before it), or `length` when none does.
size_t FindTrafficLogRecord(unsigned char *record, const unsigned char *bytes, size_t length, int day, int hour);
