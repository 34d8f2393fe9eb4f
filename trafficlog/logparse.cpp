// logparse.cpp: a month's log records as the chart, the export and the writer read them.
#include "trafficlog/logparse.h"

#include <string.h>

static unsigned long LittleEndian32(const unsigned char *p)
{
    return (unsigned long)p[0] | (unsigned long)p[1] << 8 | (unsigned long)p[2] << 16 |
           (unsigned long)p[3] << 24;
}

// Lays the record at `at` of a read over the buffer: a short last one only
// over the buffer's first bytes, as a 12-byte read at the end of the file
// leaves them.
static void LayRecord(unsigned char *record, const unsigned char *bytes, size_t length, size_t at)
{
    size_t n = length - at < TRAFFIC_RECORD_BYTES ? length - at : TRAFFIC_RECORD_BYTES;
    memcpy(record, bytes + at, n);
}

static void Count(double *slot, double value, bool add, double *maximum)
{
    *slot = add ? *slot + value : value;
    if (*slot > *maximum)
        *maximum = *slot;
}

void AddTrafficLogBytes(TrafficLogView *view, const unsigned char *bytes, size_t length)
{
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        LayRecord(view->record, bytes, length, at);
        const unsigned char *record = view->record;
        int day = (signed char)record[0];
        bool hourly = view->mode == HOURLY_MODE;
        int slot = hourly ? (signed char)record[1] : day;
        // A damaged file may name any slot; the series have 32.
        if (slot < 0 || slot >= SERIES_SLOTS || (hourly && day != view->day))
            continue;
        Count(&view->transmitted[slot], (double)LittleEndian32(record + 8), !hourly, view->maximum);
        Count(&view->received[slot], (double)LittleEndian32(record + 4), !hourly, view->maximum);
    }
}

void AddExportMonthBytes(TrafficExportView *view, const unsigned char *bytes, size_t length)
{
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        LayRecord(view->record, bytes, length, at);
        int d = (signed char)view->record[0];
        bool passes;
        if (*view->firstRecord) {
            *view->firstRecord = false;
            passes = d >= view->fromDay && (!view->lastMonth || d <= view->toDay);
        } else {
            passes = !(view->lastMonth && d > view->toDay);
        }
        if (!passes)
            continue;
        double out = (double)LittleEndian32(view->record + 8), in = (double)LittleEndian32(view->record + 4);
        *view->totalOut += out;
        *view->totalIn += in;
        // A damaged file may name any day: it counts in the month's total,
        // but only days 0-31 have a slot.
        if (d >= 0 && d < SERIES_SLOTS) {
            view->transmitted[d] += out;
            view->received[d] += in;
        }
    }
}

size_t FindTrafficLogRecord(unsigned char *record, const unsigned char *bytes, size_t length, int day, int hour)
{
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        LayRecord(record, bytes, length, at);
        if ((signed char)record[0] == day && (signed char)record[1] == hour)
            return at;
    }
    return length;
}
