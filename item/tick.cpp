// tick.cpp: the monitored adapter and the 2-second sampling tick.
#include "item/item.h"
#include "platform/platform.h"

#include <stdlib.h>

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
            wsprintfW(g_item.adapterName, L"%S", a->AdapterName);
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
            if (lstrcmpW(table->Adapter[i].Name, g_item.adapterName) == 0) {
                g_item.interfaceIndex = table->Adapter[i].Index;
                break;
            }
        }
    }
    free(table);
    return result;
}

void OnTick(HWND)
{
}
