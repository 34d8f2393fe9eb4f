// tick.cpp: the monitored adapter and the 2-second sampling tick.
#include "item/item.h"
#include "item/strip.h"
#include "platform/platform.h"
#include "resources/resource.h"
#include "trafficlog/trafficlog.h"
#include "wireless/wireless.h"

#include <stdlib.h>
#include <wchar.h>

// The monitored adapter is the first Ethernet-type adapter in the system's
// order; its interface index is found by the exact adapter name.
bool ChooseAdapter()
{
    g_item.adapterName[0] = 0;
    DWORD count = 0;
    platform::GetNumberOfInterfaces(&count);
    if (count == 0) {
        g_item.interfaceIndex = UNKNOWN_INTERFACE;
        return false;
    }

    bool result = true;
    ULONG size = 0;
    if (platform::GetAdaptersInfo(nullptr, &size) == ERROR_BUFFER_OVERFLOW) {
        IP_ADAPTER_INFO *info = static_cast<IP_ADAPTER_INFO *>(malloc(size));
        if (!info)
            return false;
        if (platform::GetAdaptersInfo(info, &size) == NO_ERROR) {
            IP_ADAPTER_INFO *a = info;
            while (a && a->Type != MIB_IF_TYPE_ETHERNET)
                a = a->Next;
            if (!a) {
                free(info);
                return false;
            }
            // The name field holds more than adapterName does: cut, not overrun.
            wsprintfW(g_item.adapterName, L"%.127hs", a->AdapterName);
        }
        free(info);
    }

    size = 0;
    if (platform::GetInterfaceInfo(nullptr, &size) != ERROR_INSUFFICIENT_BUFFER)
        return result;
    IP_INTERFACE_INFO *table = static_cast<IP_INTERFACE_INFO *>(malloc(size));
    if (!table)
        return result;
    if (platform::GetInterfaceInfo(table, &size) == NO_ERROR) {
        for (LONG i = 0; i < table->NumAdapters; i++) {
            // Character by character: lstrcmpW's word sort would call some
            // different names equal.
            if (wcscmp(table->Adapter[i].Name, g_item.adapterName) == 0) {
                g_item.interfaceIndex = table->Adapter[i].Index;
                break;
            }
        }
    }
    free(table);
    return result;
}

// The adapter is chosen again whenever its counters cannot be read, so an
// adapter that went and came back is found under its new index.
bool ReadInterfaceCounters(DWORD *transmitted, DWORD *received)
{
    *transmitted = *received = 0;
    if (g_item.interfaceIndex == UNKNOWN_INTERFACE) {
        ChooseAdapter();
        if (g_item.interfaceIndex == UNKNOWN_INTERFACE)
            return true;
    }
    MIB_IFROW row = {};
    row.dwIndex = g_item.interfaceIndex;
    if (platform::GetIfEntry(&row) != NO_ERROR) {
        ChooseAdapter();
        if (g_item.interfaceIndex == UNKNOWN_INTERFACE)
            return true;
        row = MIB_IFROW();
        row.dwIndex = g_item.interfaceIndex;
        if (platform::GetIfEntry(&row) != NO_ERROR)
            return true;
    }
    *transmitted = row.dwOutOctets;
    *received = row.dwInOctets;
    return true;
}

// Signal bands: no signal at -90 dBm and below (no reading is -200), then
// -89..-81, -80..-71, -70..-67, and -66 and above.
int SignalBand(int dbm)
{
    if (dbm <= -90)
        return 0;
    if (dbm <= -81)
        return 1;
    if (dbm <= -71)
        return 2;
    if (dbm <= -67)
        return 3;
    return 4;
}

int TaskbarIconId()
{
    // Rows: sending and receiving, sending only, receiving only, idle. The
    // hi-res row for both directions skips 215; keep it so.
    static const int kHiRes[4][5] = {
        {IDI_TASKBAR_BOTH0_HIRES, IDI_TASKBAR_BOTH1_HIRES, IDI_TASKBAR_BOTH2_HIRES,
         IDI_TASKBAR_BOTH3_HIRES, IDI_TASKBAR_BOTH4_HIRES},
        {IDI_TASKBAR_SEND0_HIRES, IDI_TASKBAR_SEND1_HIRES, IDI_TASKBAR_SEND2_HIRES,
         IDI_TASKBAR_SEND3_HIRES, IDI_TASKBAR_SEND4_HIRES},
        {IDI_TASKBAR_RECV0_HIRES, IDI_TASKBAR_RECV1_HIRES, IDI_TASKBAR_RECV2_HIRES,
         IDI_TASKBAR_RECV3_HIRES, IDI_TASKBAR_RECV4_HIRES},
        {IDI_TASKBAR_IDLE0_HIRES, IDI_TASKBAR_IDLE1_HIRES, IDI_TASKBAR_IDLE2_HIRES,
         IDI_TASKBAR_IDLE3_HIRES, IDI_TASKBAR_IDLE4_HIRES},
    };
    static const int kNormal[4][5] = {
        {IDI_TASKBAR_BOTH0, IDI_TASKBAR_BOTH1, IDI_TASKBAR_BOTH2, IDI_TASKBAR_BOTH3, IDI_TASKBAR_BOTH4},
        {IDI_TASKBAR_SEND0, IDI_TASKBAR_SEND1, IDI_TASKBAR_SEND2, IDI_TASKBAR_SEND3, IDI_TASKBAR_SEND4},
        {IDI_TASKBAR_RECV0, IDI_TASKBAR_RECV1, IDI_TASKBAR_RECV2, IDI_TASKBAR_RECV3, IDI_TASKBAR_RECV4},
        {IDI_TASKBAR_IDLE0, IDI_TASKBAR_IDLE1, IDI_TASKBAR_IDLE2, IDI_TASKBAR_IDLE3, IDI_TASKBAR_IDLE4},
    };
    bool sending = false, receiving = false;
    if (g_item.ringIndex >= 0 && g_item.ringIndex < RING_SIZE) {
        sending = g_item.outDeltas[g_item.ringIndex] != 0;
        receiving = g_item.inDeltas[g_item.ringIndex] != 0;
    }
    int row = sending ? (receiving ? 0 : 1) : (receiving ? 2 : 3);
    int band = SignalBand(g_item.signalDbm);
    return IsHiResScreen() ? kHiRes[row][band] : kNormal[row][band];
}

// Paints the status icon straight onto the device screen. The snapshot under
// it is compared with the screen one pixel at a time and the comparison stops
// at the first difference: something else painted there, so the snapshot is
// taken again; when nothing changed the snapshot is put back first. The
// snapshot then holds the previous icon, so the icon is laid over the clean
// taskbar captured when the cache was built: every state covers the whole
// square and replaces the one before exactly.
static void UpdateTaskbarIcon()
{
    int s = IsHiResScreen() ? 2 : 1, side = 16 * s, top = 5 * s, x = (int)g_item.xLocation;
    HDC screen = platform::GetDC(nullptr);
    if (!screen)
        return;

    HDC memory = platform::CreateCompatibleDC(screen);
    if (memory) {
        if (g_item.iconBackground) {
            HGDIOBJ old = SelectObject(memory, g_item.iconBackground);
            bool same = true;
            for (int row = 0; row < side && same; row++) {
                for (int column = 0; column < side; column++) {
                    if (GetPixel(screen, x + column, top + row) != GetPixel(memory, column, row)) {
                        same = false;
                        break;
                    }
                }
            }
            if (same)
                BitBlt(screen, x, top, side, side, memory, 0, 0, SRCCOPY);
            else
                BitBlt(memory, 0, 0, side, side, screen, x, top, SRCCOPY);
            SelectObject(memory, old);
        } else {
            HBITMAP bitmap = platform::CreateCompatibleBitmap(screen, side, side);
            if (bitmap) {
                HGDIOBJ old = SelectObject(memory, bitmap);
                BitBlt(memory, 0, 0, side, side, screen, x, top, SRCCOPY);
                SelectObject(memory, old);
                g_item.iconBackground = bitmap;
            }
        }
    }

    IconSquare square;
    if (BeginIconSquare(screen, x, top, side, &square)) {
        if (memory && g_item.taskbarBackground) {
            HGDIOBJ old = SelectObject(memory, g_item.taskbarBackground);
            BitBlt(square.dc, 0, 0, side, side, memory, 0, 0, SRCCOPY);
            SelectObject(memory, old);
        }
        EndIconSquare(screen, TaskbarIconId(), &square);
    }
    if (memory)
        DeleteDC(memory);
    platform::ReleaseDC(nullptr, screen);
}

// An increment in 32-bit arithmetic read as signed: a counter that wrapped
// gives the true small step, one that fell back (or jumped by 2^31 or more)
// gives 0.
static DWORD Increment(DWORD now, DWORD last)
{
    LONG step = (LONG)(now - last);
    return step < 0 ? 0 : (DWORD)step;
}

void OnTick(HWND window)
{
    QuerySignal();
    DWORD out, in;
    ReadInterfaceCounters(&out, &in);

    // The first reading only primes the counters.
    if (g_item.sampleCount == -1) {
        g_item.lastOutOctets = out;
        g_item.lastInOctets = in;
        g_item.sampleCount = 0;
        return;
    }

    if (g_item.sampleCount == RING_SIZE) {
        g_item.ringIndex = (g_item.ringIndex + 1) % RING_SIZE;
        g_item.ringStart = (g_item.ringStart + 1) % RING_SIZE;
    } else if (g_item.sampleCount == 0) {
        g_item.ringIndex = g_item.ringStart = 0;
        g_item.sampleCount = 1;
    } else {
        g_item.ringIndex++;
        g_item.sampleCount++;
    }
    g_item.outDeltas[g_item.ringIndex] = Increment(out, g_item.lastOutOctets);
    g_item.inDeltas[g_item.ringIndex] = Increment(in, g_item.lastInOctets);

    if (g_item.showTaskbarIcon)
        UpdateTaskbarIcon();
    LogTraffic(window, g_item.inDeltas[g_item.ringIndex], g_item.outDeltas[g_item.ringIndex]);

    g_item.lastOutOctets = out;
    g_item.lastInOctets = in;
}
