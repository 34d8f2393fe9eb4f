// reader.cpp: reads a monthly traffic log into the charts' series; calendar and byte-count text.
#include "platform/text.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>
#include <string.h>

// A well-formed month has at most 744 records; far more means a damaged file,
// and the read still has to end.
static const int kMaxRecordReads = 1 << 20;

static DWORD LittleEndian32(const unsigned char *p)
{
    return (DWORD)p[0] | (DWORD)p[1] << 8 | (DWORD)p[2] << 16 | (DWORD)p[3] << 24;
}

void AddTrafficLogRecord(const unsigned char *record, int mode, int day, double *transmitted,
                         double *received, double *maximum)
{
    int recordDay = (signed char)record[0];
    int slot = mode == HOURLY_MODE ? (signed char)record[1] : recordDay;
    // A damaged file may name any slot; the series have 32.
    if (slot < 0 || slot >= SERIES_SLOTS)
        return;
    double out = LittleEndian32(record + 8);
    double in = LittleEndian32(record + 4);
    if (mode == HOURLY_MODE) {
        if (recordDay != day)
            return;
        // Assigned: of two records for one hour the later wins.
        transmitted[slot] = out;
        if (transmitted[slot] > *maximum)
            *maximum = transmitted[slot];
        received[slot] = in;
        if (received[slot] > *maximum)
            *maximum = received[slot];
    } else {
        transmitted[slot] += out;
        if (transmitted[slot] > *maximum)
            *maximum = transmitted[slot];
        received[slot] += in;
        if (received[slot] > *maximum)
            *maximum = received[slot];
    }
}

void AddTrafficLogBytes(const unsigned char *bytes, size_t length, int mode, int day,
                        double *transmitted, double *received, double *maximum)
{
    unsigned char record[TRAFFIC_RECORD_BYTES] = {};
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        size_t n = length - at < TRAFFIC_RECORD_BYTES ? length - at : TRAFFIC_RECORD_BYTES;
        memcpy(record, bytes + at, n);
        AddTrafficLogRecord(record, mode, day, transmitted, received, maximum);
    }
}

int ReadTrafficLog(int mode, int year, int month, int day, double *transmitted, double *received,
                   double *maximum)
{
    int slots = mode == HOURLY_MODE ? 24 : DaysInMonth(year, month);
    for (int i = 0; i < SERIES_SLOTS; i++)
        transmitted[i] = received[i] = 0.0;

    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (!file)
        return 0;
    *maximum = 0.0;
    // A month without a file is an empty view; there is nothing to read.
    if (file == INVALID_HANDLE_VALUE)
        return slots;

    // Read as the writer writes, 12 bytes at a time; a short last read keeps
    // the previous record's bytes behind it.
    unsigned char record[TRAFFIC_RECORD_BYTES] = {};
    for (int reads = 0; reads < kMaxRecordReads; reads++) {
        DWORD got = 0;
        if (!ReadFile(file, record, TRAFFIC_RECORD_BYTES, &got, nullptr) || got == 0)
            break;
        AddTrafficLogRecord(record, mode, day, transmitted, received, maximum);
    }
    CloseHandle(file);
    return slots;
}

int DaysInMonth(int year, int month)
{
    static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && ((year % 4 == 0 && year % 100 != 0) || year % 400 == 0))
        return 29;
    return kDays[month - 1];
}

LPCWSTR MonthAbbrev(int month)
{
    static const LPCWSTR kNames[12] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                       L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    return kNames[month - 1];
}

LPWSTR FormatByteCount(double value, LPWSTR text, size_t size)
{
    // Formatted in full first, then cut to the caller's buffer.
    WCHAR full[352];
    if (value == 0.0)
        FormatText(full, 352, L"0");
    else if (value < 1048576.0)
        FormatText(full, 352, L"%.2fKB", value / 1024);
    else if (value < 1073741824.0)
        FormatText(full, 352, L"%.2fMB", value / 1024 / 1024);
    else
        FormatText(full, 352, L"%.2fGB", value / 1024 / 1024 / 1024);
    if (size > 0)
        CopyText(text, full, size);
    return text;
}
