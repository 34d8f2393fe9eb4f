// bench_export.cpp: what a CSV export of twelve full months costs (744 records each).
//
// Run by hand under Wine: ./wine-run.sh bench_export.exe [rounds]. The device
// is the fake one; the log files and the CSV are real files.
#include "item/item.h"
#include "platform/fake/fake.h"
#include "trafficlog/export.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

LARGE_INTEGER g_frequency;

double Now()
{
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return (double)t.QuadPart * 1e6 / (double)g_frequency.QuadPart;
}

// Every hour of 31 days, in time order, as the writer leaves a busy month.
void WriteFullMonth(int year, int month)
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    HANDLE f = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    for (int day = 1; day <= 31; day++) {
        for (int hour = 0; hour < 24; hour++) {
            TrafficLogRecord r = {};
            r.day = (signed char)day;
            r.hour = (signed char)hour;
            r.received = 150000u * (hour + 1) + month;
            r.transmitted = 20000u * (day + 1);
            DWORD written;
            WriteFile(f, &r, sizeof r, &written, nullptr);
        }
    }
    CloseHandle(f);
}

DWORD FileSize(const WCHAR *path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    return GetFileAttributesExW(path, GetFileExInfoStandard, &data) ? data.nFileSizeLow : 0;
}

} // namespace

int main(int argc, char **argv)
{
    int rounds = argc > 1 ? atoi(argv[1]) : 200;
    if (rounds < 1)
        rounds = 1;
    QueryPerformanceFrequency(&g_frequency);

    WCHAR temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    std::wstring root = std::wstring(temp) + L"quorvane-bench-export";
    fake::Reset(root);
    g_item.instance = GetModuleHandleW(nullptr);
    InitializeItemState();
    std::wstring folder = root + L"\\Logs";
    CreateDirectoryW(folder.c_str(), nullptr);
    lstrcpyW(g_item.dataFolder, folder.c_str());

    for (int month = 1; month <= 12; month++)
        WriteFullMonth(2025, month);
    std::wstring csv = root + L"\\export.csv";

    std::vector<double> times;
    for (int i = 0; i < rounds; i++) {
        double start = Now();
        ExportTrafficCsv(csv.c_str(), {2025, 1, 1}, {2025, 12, 31});
        times.push_back(Now() - start);
    }
    double sum = 0;
    for (double t : times)
        sum += t;
    std::sort(times.begin(), times.end());
    printf("CSV export, Jan 1 - Dec 31, 12 x 744 records: median %.1f us   mean %.1f us   "
           "min %.1f us   (%d runs)\n",
           times[times.size() / 2], sum / times.size(), times[0], rounds);
    printf("CSV file: %lu bytes\n", FileSize(csv.c_str()));

    for (int month = 1; month <= 12; month++) {
        WCHAR path[MAX_PATH];
        TrafficLogPath(2025, month, path);
        DeleteFileW(path);
    }
    DeleteFileW(csv.c_str());
    RemoveDirectoryW(folder.c_str());
    return 0;
}
