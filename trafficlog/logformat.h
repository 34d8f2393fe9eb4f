// logformat.h: a log's file name, its record's fields, the calendar and the byte-count text; no Windows header.
#pragma once

#include <stddef.h>
#include <stdint.h>

#define TRAFFIC_LOG_NAME_CHARS 11   // "YYYYMM.log" and its terminator

// One 12-byte record, decoded: day and hour are signed bytes, the counts
// little-endian and unsigned; bytes 2-3 are never read.
struct TrafficLogFields {
    int day, hour;
    uint32_t received, transmitted;
};

void DecodeTrafficLogRecord(const unsigned char *bytes, TrafficLogFields *fields);
// As the writer lays a record out: the reserved bytes 0.
void EncodeTrafficLogRecord(const TrafficLogFields *fields, unsigned char *bytes);

// A month's file name, "%04d%02d.log" (200612.log), into `name` of `size`
// characters; false when it does not fit.
bool TrafficLogFileName(int year, int month, char *name, size_t size);
// The year and month a file name stands for: six digits, a month 1-12 and
// ".log", nothing else (no folder).
bool ParseTrafficLogFileName(const char *name, int *year, int *month);

// 28-31 by the Gregorian rule; the month is not checked (1-12 only).
int DaysInMonth(int year, int month);
// True for a day of that month (1 to its length) and an hour 0-23.
bool IsTrafficLogSlot(int year, int month, int day, int hour);
// "Jan" ... "Dec" for months 1-12.
const char *MonthAbbrevText(int month);

// The one text of a byte count: "0", "%.2fKB", "%.2fMB" or "%.2fGB", 1024 at
// every step, cut to `size` characters. Returns text.
char *FormatByteCountText(double value, char *text, size_t size);
