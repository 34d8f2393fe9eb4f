// bench.cpp: the benchmarks' shared harness.
#include "tools/bench.h"
#include "item/item.h"
#include "platform/fake/fake.h"

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>

int BenchRounds(int argc, char **argv, int fallback)
{
    int rounds = argc > 1 ? atoi(argv[1]) : fallback;
    return rounds < 1 ? 1 : rounds;
}

std::wstring BenchRoot(const wchar_t *name)
{
    WCHAR temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    std::wstring root = std::wstring(temp) + name;
    fake::Reset(root);
    return root;
}

std::wstring BenchLogFolder(const std::wstring &root)
{
    g_item.instance = GetModuleHandleW(nullptr);
    InitializeItemState();
    std::wstring folder = root + L"\\Logs";
    CreateDirectoryW(folder.c_str(), nullptr);
    lstrcpyW(g_item.dataFolder, folder.c_str());
    return folder;
}

double NowMicroseconds()
{
    static LARGE_INTEGER frequency;
    if (!frequency.QuadPart)
        QueryPerformanceFrequency(&frequency);
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return (double)t.QuadPart * 1e6 / (double)frequency.QuadPart;
}

double ReportTimes(const char *what, std::vector<double> &times)
{
    if (times.empty())
        return 0;
    double sum = 0;
    for (double t : times)
        sum += t;
    std::sort(times.begin(), times.end());
    printf("%-52s median %8.1f us   mean %8.1f us   min %8.1f us   (%d runs)\n", what,
           times[times.size() / 2], sum / times.size(), times[0], (int)times.size());
    return times[times.size() / 2];
}

void WriteFullMonth(int year, int month, void (*values)(int month, int day, int hour, TrafficLogRecord *record))
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    HANDLE f = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    for (int day = 1; day <= 31; day++) {
        for (int hour = 0; hour < 24; hour++) {
            TrafficLogRecord r = {};
            r.day = (signed char)day;
            r.hour = (signed char)hour;
            values(month, day, hour, &r);
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

DWORD SizeBesideBenchmark(const WCHAR *name)
{
    WCHAR path[MAX_PATH + 64];
    DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
    while (n > 0 && path[n - 1] != L'\\' && path[n - 1] != L'/')
        n--;
    lstrcpyW(path + n, name);
    return FileSize(path);
}
