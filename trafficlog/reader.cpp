// reader.cpp: reads a monthly traffic log into the charts' series; calendar and byte-count text.
#include "platform/text.h"
#include "trafficlog/reader.h"
#include "trafficlog/trafficlog.h"

// A well-formed month has at most 744 records; far more means a damaged file,
// and the read still has to end.
static const int kMaxRecords = 1 << 20;
static const int kRecordsPerRead = 64;

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

    TrafficLogView view = {mode, day, transmitted, received, maximum, {0}};
    unsigned char bytes[TRAFFIC_RECORD_BYTES * kRecordsPerRead];
    for (int reads = 0; reads < kMaxRecords / kRecordsPerRead; reads++) {
        DWORD got = 0;
        if (!ReadFile(file, bytes, sizeof bytes, &got, nullptr) || got == 0)
            break;
        AddTrafficLogBytes(&view, bytes, got);
    }
    CloseHandle(file);
    return slots;
}

LPCWSTR MonthAbbrev(int month)
{
    static const LPCWSTR kNames[12] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                       L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    return kNames[month - 1];
}

LPWSTR FormatByteCount(double value, LPWSTR text, size_t size)
{
    // Formatted in full first, then cut to the caller's buffer. The text is
    // ASCII, so each character widens as it stands.
    char narrow[352];
    FormatByteCountText(value, narrow, sizeof narrow);
    WCHAR full[352];
    size_t i = 0;
    for (; narrow[i]; i++)
        full[i] = (WCHAR)(unsigned char)narrow[i];
    full[i] = 0;
    if (size > 0)
        CopyText(text, full, size);
    return text;
}
