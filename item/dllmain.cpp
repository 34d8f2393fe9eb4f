// dllmain.cpp: the module entry of quorvane.dll.
#include "item/item.h"

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
        return AttachModule(instance);
    if (reason == DLL_PROCESS_DETACH)
        DetachModule();
    return TRUE;
}
