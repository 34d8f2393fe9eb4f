// export.cpp: the CSV export of the traffic log over a range of days.
#include "platform/text.h"
#include "trafficlog/export.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>
#include <string.h>
#include <wchar.h>

namespace {

const char kCsvHeader[] = "\"Date\",\"Xmit\",\"Rcv\",\"Total\"\n";
const int kFieldChars = 64;
const int kLineChars = 4 * kFieldChars + 16;
const int kRecordsPerRead = 64;

void WriteBytes(HANDLE file, const char *bytes, int length)
{
    DWORD written;
    WriteFile(file, bytes, (DWORD)length, &written, nullptr);   // write errors are ignored
}

void WriteRow(HANDLE csv, LPCWSTR date, double transmitted, double received)
{
    WCHAR out[BYTE_COUNT_CHARS], in[BYTE_COUNT_CHARS], total[BYTE_COUNT_CHARS];
    FormatByteCount(transmitted, out, BYTE_COUNT_CHARS);
    FormatByteCount(received, in, BYTE_COUNT_CHARS);
    FormatByteCount(transmitted + received, total, BYTE_COUNT_CHARS);
    char line[kLineChars];
    WriteBytes(csv, line, FormatCsvRow(line, kLineChars, date, out, in, total));
}

// Sums one month's log into day slots 0-31 and the month totals (see
// AddExportMonthBytes for which records count).
void ReadMonth(int year, int month, bool lastMonth, const ExportDate &from, const ExportDate &to,
               bool *firstRecord, double *transmitted, double *received, double *totalOut,
               double *totalIn)
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    HANDLE log = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // No file, or one that cannot be read: a month without traffic. Reads
    // that fail end the month rather than being tried again for ever.
    if (!log || log == INVALID_HANDLE_VALUE)
        return;
    TrafficExportView view = {from.day, to.day, lastMonth, firstRecord, transmitted, received,
                              totalOut, totalIn, {0}};
    unsigned char bytes[TRAFFIC_RECORD_BYTES * kRecordsPerRead];
    for (;;) {
        DWORD got = 0;
        if (!ReadFile(log, bytes, sizeof bytes, &got, nullptr) || got == 0)
            break;
        AddExportMonthBytes(&view, bytes, got);
    }
    CloseHandle(log);
}

} // namespace


bool ExportRangeReversed(const ExportDate &from, const ExportDate &to)
{
    if (to.year != from.year)
        return to.year < from.year;
    if (to.month != from.month)
        return to.month < from.month;
    return to.day < from.day;
}

int FormatCsvRow(char *line, int size, LPCWSTR date, LPCWSTR transmitted, LPCWSTR received,
                 LPCWSTR total)
{
    // The texts are ASCII in practice (month names, digits, KB/MB/GB).
    LPCWSTR wide[4] = {date, transmitted, received, total};
    char narrow[4][kFieldChars];
    for (int i = 0; i < 4; i++) {
        int n = WideCharToMultiByte(CP_ACP, 0, wide[i], -1, narrow[i], kFieldChars, nullptr, nullptr);
        if (n == 0)
            narrow[i][0] = 0;
        narrow[i][kFieldChars - 1] = 0;
    }
    // The C runtime's own _snprintf, which the device has too; the C99
    // snprintf would link a second printf (15 KB) into the DLL. It leaves a
    // full buffer open and says -1 when the line was cut.
    int n = _snprintf(line, size, "\"%s\",\"%s\",\"%s\",\"%s\"\n", narrow[0], narrow[1], narrow[2],
                      narrow[3]);
    if (n < 0 || n >= size) {
        line[size - 1] = 0;
        return size - 1;
    }
    return n;
}

void WriteTrafficCsv(HANDLE csv, const ExportDate &from, const ExportDate &to)
{
    WriteBytes(csv, kCsvHeader, (int)strlen(kCsvHeader));
    bool firstRecord = true;
    int year = from.year, month = from.month;
    // Month by month up to To's month; a reversed range writes the header only.
    while (year < to.year || (year == to.year && month <= to.month)) {
        double transmitted[SERIES_SLOTS] = {}, received[SERIES_SLOTS] = {};
        double totalOut = 0.0, totalIn = 0.0;
        bool lastMonth = year == to.year && month == to.month;
        ReadMonth(year, month, lastMonth, from, to, &firstRecord, transmitted, received, &totalOut,
                  &totalIn);

        // Every slot 1-31 is looked at, whatever the month's length.
        for (int d = 1; d <= 31; d++) {
            if (transmitted[d] > 0 || received[d] > 0) {
                WCHAR date[kFieldChars];
                FormatText(date, kFieldChars, L"%ls %02d, %04d", MonthAbbrev(month), d, year);
                WriteRow(csv, date, transmitted[d], received[d]);
            }
        }
        WCHAR title[kFieldChars];
        FormatText(title, kFieldChars, L"Total for %ls %04d", MonthAbbrev(month), year);
        WriteRow(csv, title, totalOut, totalIn);

        if (++month > 12) {
            month = 1;
            year++;
        }
    }
}

bool ExportTrafficCsv(LPCWSTR path, const ExportDate &from, const ExportDate &to)
{
    HANDLE csv = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
    if (!csv || csv == INVALID_HANDLE_VALUE)
        return false;
    WriteTrafficCsv(csv, from, to);
    CloseHandle(csv);
    return true;
}
