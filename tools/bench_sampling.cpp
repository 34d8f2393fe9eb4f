// bench_sampling.cpp: what one log write and one whole tick cost against a full month's file, beside plain file I/O.
//
// Run by hand under Wine: ./wine-run.sh bench_sampling.exe [rounds]. The
// device is the fake one; the files are real.
#include "item/item.h"
#include "platform/fake/fake.h"
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

// Median and mean of `rounds` runs of `step`, in microseconds.
template <typename Step> void Measure(const char *what, int rounds, Step step)
{
    std::vector<double> times;
    times.reserve(rounds);
    for (int i = 0; i < rounds; i++) {
        double start = Now();
        step();
        times.push_back(Now() - start);
    }
    double sum = 0;
    for (double t : times)
        sum += t;
    std::sort(times.begin(), times.end());
    printf("%-52s median %8.1f us   mean %8.1f us   (%d runs)\n", what, times[times.size() / 2],
           sum / times.size(), rounds);
}

// A month with traffic in every hour: 31 x 24 records, in time order.
void WriteFullMonth(const WCHAR *path)
{
    HANDLE f = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    for (int day = 1; day <= 31; day++) {
        for (int hour = 0; hour < 24; hour++) {
            TrafficLogRecord r = {};
            r.day = (signed char)day;
            r.hour = (signed char)hour;
            r.received = 1000u * day;
            r.transmitted = 10u * hour;
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
    int rounds = argc > 1 ? atoi(argv[1]) : 2000;
    if (rounds < 1)
        rounds = 1;
    QueryPerformanceFrequency(&g_frequency);

    WCHAR temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    std::wstring root = std::wstring(temp) + L"quorvane-bench";
    fake::Reset(root);
    g_item.instance = GetModuleHandleW(nullptr);
    InitializeItemState();
    std::wstring folder = root + L"\\Logs";
    CreateDirectoryW(folder.c_str(), nullptr);
    lstrcpyW(g_item.dataFolder, folder.c_str());

    // The last hour of the month: every write scans all 744 records.
    fake::SetTime(2026, 1, 31, 23);
    WCHAR path[MAX_PATH];
    TrafficLogPath(2026, 1, path);
    WriteFullMonth(path);
    printf("month file: %lu bytes (%lu records)\n", FileSize(path), FileSize(path) / 12);

    Measure("LogTraffic, full month (744 records)", rounds, [] { LogTraffic(nullptr, 1000, 500); });

    // Plain I/O of the same size: one read of the whole file, one write of a record.
    static BYTE buffer[8928];
    Measure("open + read 8,928 bytes + write 12 bytes + close", rounds, [&] {
        HANDLE f = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD got, written;
        SetFilePointer(f, 0, nullptr, FILE_BEGIN);
        ReadFile(f, buffer, sizeof buffer, &got, nullptr);
        SetFilePointer(f, -12, nullptr, FILE_END);
        WriteFile(f, buffer + sizeof buffer - 12, 12, &written, nullptr);
        CloseHandle(f);
    });
    HANDLE open = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    Measure("read 8,928 bytes + write 12 bytes (file kept open)", rounds, [&] {
        DWORD got, written;
        SetFilePointer(open, 0, nullptr, FILE_BEGIN);
        ReadFile(open, buffer, sizeof buffer, &got, nullptr);
        SetFilePointer(open, -12, nullptr, FILE_END);
        WriteFile(open, buffer + sizeof buffer - 12, 12, &written, nullptr);
    });
    CloseHandle(open);

    // Whole ticks on a device with one Ethernet adapter that moves data every
    // tick, the taskbar icon shown (its snapshot compared), no wireless.
    fake::g_device.adapters.push_back({"{ETH}", L"", MIB_IF_TYPE_ETHERNET, 4, 0, 0});
    auto tick = [] {
        fake::g_device.adapters[0].inOctets += 1500;
        fake::g_device.adapters[0].outOctets += 300;
        OnTick(nullptr);
    };
    tick();
    tick();
    Measure("whole tick, 240x320 screen (16x16 icon)", rounds, tick);

    fake::SetScreen(480, 640);
    g_item.screenWidth = 480;
    g_item.screenHeight = 640;
    if (g_item.iconBackground) {
        DeleteObject(g_item.iconBackground);
        g_item.iconBackground = nullptr;
    }
    tick();
    Measure("whole tick, 480x640 screen (32x32 icon)", rounds, tick);

    g_item.showTaskbarIcon = false;
    Measure("whole tick, taskbar icon hidden", rounds, tick);

    printf("month file after the run: %lu bytes\n", FileSize(path));
    DeleteFileW(path);
    return 0;
}
