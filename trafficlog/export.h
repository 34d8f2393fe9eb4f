// export.h: the CSV export of a date range of the traffic log.
#pragma once

#include <windows.h>

struct ExportDate {
    int year, month, day;
};

// True when `to` lies before `from`; a range of one day is valid.
bool ExportRangeReversed(const ExportDate &from, const ExportDate &to);

// Writes the CSV of the logged traffic from `from` to `to`, both included, to
// an open file: the header, then per month its day rows and its total row.
// Only the first record read is held to From's day. A month without a
// readable log counts as one without traffic.
void WriteTrafficCsv(HANDLE csv, const ExportDate &from, const ExportDate &to);

// Creates (or replaces) the file at `path` and writes the CSV into it; false
// when the file cannot be created, and then nothing is written.
bool ExportTrafficCsv(LPCWSTR path, const ExportDate &from, const ExportDate &to);

// One CSV line with every field quoted, LF-ended, into `line`; its length.
int FormatCsvRow(char *line, int size, LPCWSTR date, LPCWSTR transmitted, LPCWSTR received,
                 LPCWSTR total);
