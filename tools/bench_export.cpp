// bench_export.cpp: what a CSV export of twelve full months costs (744 records each).
//
// Run by hand under Wine: ./wine-run.sh bench_export.exe [rounds]. The device
// is the fake one; the log files and the CSV are real files.
#include "tools/bench.h"
#include "item/item.h"
#include "trafficlog/export.h"
#include "trafficlog/trafficlog.h"

#include <stdio.h>

int main(int argc, char **argv)
{
    int rounds = BenchRounds(argc, argv, 200);
    std::wstring root = BenchRoot(L"quorvane-bench-export");
    std::wstring folder = BenchLogFolder(root);

    for (int month = 1; month <= 12; month++) {
        WriteFullMonth(2025, month, [](int month, int day, int hour, TrafficLogRecord *r) {
            r->received = 150000u * (hour + 1) + month;
            r->transmitted = 20000u * (day + 1);
        });
    }
    std::wstring csv = root + L"\\export.csv";
    Measure("CSV export, Jan 1 - Dec 31, 12 x 744 records", rounds,
            [&] { ExportTrafficCsv(csv.c_str(), {2025, 1, 1}, {2025, 12, 31}); });
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
