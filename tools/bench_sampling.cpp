// bench_sampling.cpp: what one log write and one whole tick cost against a full month's file, beside plain file I/O; the DLL's size.
//
// Run by hand under Wine: ./wine-run.sh bench_sampling.exe [rounds]. The
// device is the fake one; the files are real.
#include "tools/bench.h"
#include "item/item.h"
#include "platform/fake/fake.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>

int main(int argc, char **argv)
{
    int rounds = BenchRounds(argc, argv, 2000);
    std::wstring root = BenchRoot(L"quorvane-bench");
    BenchLogFolder(root);

    // The last hour of the month: every write scans all 744 records.
    fake::SetTime(2026, 1, 31, 23);
    WriteFullMonth(2026, 1, [](int, int day, int hour, TrafficLogRecord *r) {
        r->received = 1000u * day;
        r->transmitted = 10u * hour;
    });
    WCHAR path[MAX_PATH];
    TrafficLogPath(2026, 1, path);
    printf("month file: %lu bytes (%lu records)\n", FileSize(path), FileSize(path) / 12);

    double logTraffic = Measure("LogTraffic, full month (744 records)", rounds, [] { LogTraffic(nullptr, 1000, 500); });

    // Plain I/O of the same size: one read of the whole file, one write of a record.
    static BYTE buffer[8928];
    double floor = Measure("open + read 8,928 bytes + write 12 bytes + close", rounds, [&] {
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
    double tickNormal = Measure("whole tick, 240x320 screen (16x16 icon)", rounds, tick);

    fake::SetScreen(480, 640);
    g_item.screenWidth = 480;
    g_item.screenHeight = 640;
    if (g_item.iconBackground) {
        DeleteObject(g_item.iconBackground);
        g_item.iconBackground = nullptr;
    }
    tick();
    double tickHires = Measure("whole tick, 480x640 screen (32x32 icon)", rounds, tick);

    g_item.showTaskbarIcon = false;
    Measure("whole tick, taskbar icon hidden", rounds, tick);

    printf("month file after the run: %lu bytes\n", FileSize(path));

    // The figures the writer and the footprint are held to, from this run.
    printf("\nLogTraffic %.1f us = %.2f x the open-read-write-close floor of %.1f us (goal <= 2 x)\n",
           logTraffic, floor > 0 ? logTraffic / floor : 0.0, floor);
    double tickWorst = tickHires > tickNormal ? tickHires : tickNormal;
    printf("whole tick %.1f us, the slower screen's median (goal <= 1000 us)\n", tickWorst);
    // The build's stripped copy of the DLL.
    DWORD dll = SizeBesideBenchmark(L"stripped\\quorvane.dll");
    printf("quorvane.dll stripped: %lu bytes = %.1f KB (goal <= 400 KB)\n", dll, dll / 1024.0);
    DeleteFileW(path);
    return 0;
}
