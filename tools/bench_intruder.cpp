// bench_intruder.cpp: one intruder scan of the own /24 on the real platform, timed until no slot is pending.
// Run by tools/bench_intruder.sh inside its test network, not by hand on a real one.
#include "diagnostics/scan.h"

#include <stdio.h>

int main()
{
    LARGE_INTEGER frequency, start, now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    if (!StartScan(nullptr))
        return 1;
    HostTable *table = g_scan.table;
    int pending = SCAN_HOST_COUNT, answered = 0, named = 0, withMac = 0;
    // The dialog polls once a second; a finer poll measures the scan itself.
    while (pending > 0) {
        Sleep(20);
        pending = answered = named = withMac = 0;
        for (int i = 0; i < SCAN_HOST_COUNT; i++) {
            const HostRecord &h = table->hosts[i];
            if (h.status == 0)
                pending++;
            else if (h.status == 1) {
                answered++;
                named += h.name[0] != 0;
                withMac += h.macKnown != 0;
            }
        }
    }
    QueryPerformanceCounter(&now);
    double seconds = (double)(now.QuadPart - start.QuadPart) / frequency.QuadPart;
    printf("%.2f %d %d %d\n", seconds, answered, withMac, named);
    return 0;
}
