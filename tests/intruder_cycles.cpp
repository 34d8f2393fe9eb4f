// intruder_cycles.cpp: the detector on the real platform opened, scanning and closed mid-scan again and again; counts what is left.
// Run by tests/e2e/intruder_cycles.sh inside its test network, never on a real one.
//   intruder_cycles.exe CYCLES   prints the counts, the bound and the rows of a last full scan
// Exit status: 0 within the bound, 1 beyond it or with a Winsock start left over.
#include "diagnostics/diagnostics.h"
#include "diagnostics/scan.h"
#include "item/item.h"
#include "platform/platform.h"
#include "resources/resource.h"

#include <commctrl.h>
#include <tlhelp32.h>

#include <stdio.h>
#include <stdlib.h>

namespace {

const UINT_PTR kDriverTimer = 99;
// What the cycles may leave, over the counts after a first scan, once their
// workers have ended: every worker gone; a few handles and a little heap for
// what Wine keeps. A handle or a parameter record lost per worker is 254 a
// cycle, a table 40 KB a cycle.
const long kHandleBound = 8, kThreadBound = 0, kHeapBound = 64 * 1024;

struct Counts {
    long handles, threads, heap;
};

long Threads()
{
    long threads = 0;
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 t = {sizeof t};
    for (BOOL more = Thread32First(snapshot, &t); more; more = Thread32Next(snapshot, &t))
        threads += t.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(snapshot);
    return threads;
}

Counts Count()
{
    // Wine 8 answers GetProcessHandleCount with 0: there every handle value
    // is tried (Wine hands out the lowest free one).
    DWORD handles = 0;
    if (!GetProcessHandleCount(GetCurrentProcess(), &handles) || handles == 0)
        for (ULONG_PTR h = 4; h < 0x10000; h += 4) {
            DWORD flags;
            handles += GetHandleInformation(reinterpret_cast<HANDLE>(h), &flags) != 0;
        }
    Counts c = {(long)handles, Threads(), 0};
    HANDLE heap = GetProcessHeap();
    PROCESS_HEAP_ENTRY e = {};
    HeapLock(heap);
    while (HeapWalk(heap, &e))
        if (e.wFlags & PROCESS_HEAP_ENTRY_BUSY)
            c.heap += (long)e.cbData;
    HeapUnlock(heap);
    return c;
}

// Waits, at most SECONDS, until no more than LIMIT threads run.
long Settle(long limit, int seconds)
{
    long threads = Threads();
    for (int i = 0; i < seconds * 10 && threads > limit; i++) {
        Sleep(100);
        threads = Threads();
    }
    return threads;
}

struct Run {
    int closeAfterMs;    // < 0: until the scan is over
    DWORD pressed;
    char rows[2048];
} g_run;

void Press(HWND dialog, int id)
{
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), (LPARAM)GetDlgItem(dialog, id));
}

void ReadRows(HWND dialog)
{
    HWND list = GetDlgItem(dialog, IDC_INTRUDER_LIST);
    int used = 0;
    for (int row = 0; row < ListView_GetItemCount(list); row++)
        for (int column = 0; column < 3; column++) {
            WCHAR text[64] = L"";
            ListView_GetItemText(list, row, column, text, 64);
            used += snprintf(g_run.rows + used, sizeof g_run.rows - used, "%ls%c", text, column < 2 ? '\t' : '\n');
        }
}

// The detector's own procedure, with a hand on its buttons: Detect once it
// is up, OK after the run's delay or, for a full scan, once the scan is over.
INT_PTR CALLBACK Drive(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_TIMER && wParam == kDriverTimer) {
        bool over = g_run.closeAfterMs >= 0 || !g_scan.table || GetTickCount() - g_run.pressed > 30000;
        if (over) {
            KillTimer(dialog, kDriverTimer);
            ReadRows(dialog);
            Press(dialog, IDOK);
        }
        return TRUE;
    }
    INT_PTR result = IntruderDlgProc(dialog, message, wParam, lParam);
    if (message == WM_INITDIALOG) {
        Press(dialog, IDC_INTRUDER_DETECT);
    } else if (message == WM_COMMAND && LOWORD(wParam) == IDC_INTRUDER_DETECT) {
        g_run.pressed = GetTickCount();
        SetTimer(dialog, kDriverTimer, g_run.closeAfterMs >= 0 ? g_run.closeAfterMs : 200, nullptr);
    }
    return result;
}

void Open(int closeAfterMs)
{
    g_run.closeAfterMs = closeAfterMs;
    g_run.rows[0] = 0;
    HRSRC found = FindResourceW(g_item.instance, MAKEINTRESOURCEW(IDD_INTRUDER), RT_DIALOG);
    platform::DialogBoxIndirectParamW(g_item.instance,
                                      static_cast<LPCDLGTEMPLATE>(LockResource(LoadResource(g_item.instance, found))),
                                      nullptr, Drive, 0);
}

} // namespace

int main(int argc, char **argv)
{
    int cycles = argc > 1 ? atoi(argv[1]) : 100;
    g_item.instance = GetModuleHandleW(nullptr);
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    setvbuf(stdout, nullptr, _IONBF, 0);

    // Held throughout, as any other user of Winsock in the host would: the
    // workers' last cleanup would otherwise close a socket one of them left.
    WSADATA wsa;
    platform::WSAStartup(0x0102, &wsa);
    long threads = Threads();
    Open(-1);   // a first full scan: the libraries it needs are loaded once
    Settle(threads, 15);
    Counts base = Count();
    printf("baseline: %ld handles, %ld threads, %ld heap bytes\n", base.handles, base.threads, base.heap);
    DWORD t0 = GetTickCount();
    for (int i = 0; i < cycles; i++) {
        // Paced: about one earlier scan's workers (254) at most still running.
        Settle(base.threads + 300, 10);
        // A third of the closes fall anywhere in the first 3.2 s, up to when
        // the dead addresses' workers come back from their echo; the others
        // in the first second, while the echoes run or the first rows go in.
        Open(i % 3 == 0 ? i * 617 % 3200 : i * 617 % 1000);
        if (i % 10 == 9)
            printf("%d cycles done\n", i + 1);
    }
    printf("%d cycles in %.0f s\n", cycles, (GetTickCount() - t0) / 1000.0);
    Settle(base.threads, 20);
    Counts end = Count();
    printf("after the cycles: %ld handles, %ld threads, %ld heap bytes\n", end.handles, end.threads, end.heap);
    printf("bound: at most %ld handles, %ld threads, %ld heap bytes more\n", kHandleBound, kThreadBound,
           kHeapBound);
    // Every worker's Winsock start has been undone: with none left a socket is refused.
    platform::WSACleanup();
    bool started = socket(AF_INET, SOCK_DGRAM, 0) != INVALID_SOCKET || WSAGetLastError() != WSANOTINITIALISED;
    printf("winsock starts left: %s\n", started ? "some" : "none");
    Open(-1);
    printf("%s", g_run.rows);
    bool within = end.handles - base.handles <= kHandleBound && end.threads - base.threads <= kThreadBound &&
                  end.heap - base.heap <= kHeapBound && !started;
    return within ? 0 : 1;
}
