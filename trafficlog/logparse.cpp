// logparse.cpp: a month's log records summed into a chart's series.
#include "trafficlog/logparse.h"

#include <string.h>

static unsigned long LittleEndian32(const unsigned char *p)
{
    return (unsigned long)p[0] | (unsigned long)p[1] << 8 | (unsigned long)p[2] << 16 |
           (unsigned long)p[3] << 24;
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
        size_t n = length - at < TRAFFIC_RECORD_BYTES ? length - at : TRAFFIC_RECORD_BYTES;
        memcpy(view->record, bytes + at, n);
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
