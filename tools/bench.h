// bench.h: the hand-run benchmarks' shared harness: rounds, a fresh fake device, timings, a busy month's log.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "trafficlog/trafficlog.h"

// The rounds asked for on the command line, or `fallback`; at least 1.
int BenchRounds(int argc, char **argv, int fallback);

// A fresh fake device whose files live in TEMP\name; returns that folder.
std::wstring BenchRoot(const wchar_t *name);

// The item state set up without a start-up, logging into root\Logs; returns that folder.
std::wstring BenchLogFolder(const std::wstring &root);

double NowMicroseconds();

// Prints the median, mean and minimum of the times; returns the median.
double ReportTimes(const char *what, std::vector<double> &times);

// Times `rounds` runs of `step`, one by one; returns the median.
template <typename Step> double Measure(const char *what, int rounds, Step step)
{
    std::vector<double> times;
    times.reserve(rounds);
    for (int i = 0; i < rounds; i++) {
        double start = NowMicroseconds();
        step();
        times.push_back(NowMicroseconds() - start);
    }
    return ReportTimes(what, times);
}

// A month with traffic in every hour: 31 x 24 records in time order, as the
// writer leaves a busy month; `values` fills each record's counts.
void WriteFullMonth(int year, int month, void (*values)(int month, int day, int hour, TrafficLogRecord *record));

DWORD FileSize(const WCHAR *path);

// The size of `name` in the benchmark's own folder (the build's), 0 when it is not there.
DWORD SizeBesideBenchmark(const WCHAR *name);
