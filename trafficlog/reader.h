// reader.h: one month's log as two series, and the calendar and byte-count helpers.
#pragma once

#include <windows.h>
#include <stddef.h>

#include "trafficlog/logformat.h"
#include "trafficlog/logparse.h"

#define BYTE_COUNT_CHARS 32      // room for any FormatByteCount text

// Reads the month's log into the transmitted and received series (both
// zeroed first) and sets the maximum to the largest single slot of either.
// Hourly mode assigns the records of `day` by hour; daily mode sums every
// record into its day. Returns the view's slot count (24, or the days of the
// month), an empty view when the month has no file, or 0 when the open
// yields a null handle (the maximum is then left as it was).
int ReadTrafficLog(int mode, int year, int month, int day, double *transmitted, double *received,
                   double *maximum);

// "Jan" ... "Dec" for months 1-12.
LPCWSTR MonthAbbrev(int month);
// "0", "%.2fKB", "%.2fMB" or "%.2fGB", with 1024 at every step. Returns text.
LPWSTR FormatByteCount(double value, LPWSTR text, size_t size);
