// platform_win32.cpp: the real device (Windows CE) and the desktop stand-in for it.
#include "platform/platform.h"
#include "platform/screen.h"
#include "platform/win32/dialog_win32.h"

#include <shlobj.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

#ifdef _WIN32_WCE
// shlobj.h points this name at a W form that the device does not export.
#undef SHGetSpecialFolderPath
extern "C" BOOL WINAPI SHGetSpecialFolderPath(HWND owner, LPWSTR path, int csidl, BOOL create);
#endif

namespace {

// On a desktop the Today host plays the device screen in a window of its own;
// without the host the real screen is the device screen.
HWND DeviceScreenWindow()
{
#ifdef _WIN32_WCE
    return nullptr;
#else
    // The host's screen is a child of its frame, so FindWindowW alone never
    // sees it; look one level down in this process's own top-level windows.
    HWND top = nullptr;
    while ((top = ::FindWindowExW(nullptr, top, nullptr, nullptr)) != nullptr) {
        DWORD pid = 0;
        ::GetWindowThreadProcessId(top, &pid);
        if (pid != ::GetCurrentProcessId())
            continue;
        HWND screen = ::FindWindowExW(top, nullptr, DEVICE_SCREEN_CLASS, nullptr);
        if (screen)
            return screen;
    }
    return ::FindWindowW(DEVICE_SCREEN_CLASS, nullptr);
#endif
}

#ifndef _WIN32_WCE
// Desktop adapter lists, made to mean what the device's mean.
//
// The device lists the adapters a user has; a desktop also lists idle
// virtual ones (ifb0, ifb1, host-only networks, bridges) and lists them
// first. Its list here keeps only adapters whose interface is up, those that
// carry a default gateway first, otherwise in the system's order; when none
// is up the list stays as it was. So "the first Ethernet-type adapter" is the
// one the machine's traffic goes through.
bool AdapterIsUp(const IP_ADAPTER_INFO &a)
{
    if (a.Type == MIB_IF_TYPE_LOOPBACK)
        return false;
    MIB_IFROW row = {};
    row.dwIndex = a.Index;
    return ::GetIfEntry(&row) == NO_ERROR &&
           (row.dwOperStatus == MIB_IF_OPER_STATUS_CONNECTED ||
            row.dwOperStatus == MIB_IF_OPER_STATUS_OPERATIONAL);
}

bool AdapterHasGateway(const IP_ADAPTER_INFO &a)
{
    const char *gateway = a.GatewayList.IpAddress.String;
    return gateway[0] && lstrcmpA(gateway, "0.0.0.0") != 0;
}

// The records are rewritten in place: only when they lie as an array at the
// start of the buffer, as the IP helper lays them out, else left alone.
void ArrangeDesktopAdapters(IP_ADAPTER_INFO *info)
{
    int count = 0;
    for (IP_ADAPTER_INFO *a = info; a; a = a->Next, count++) {
        if (a != info + count)
            return;
    }
    IP_ADAPTER_INFO *kept = static_cast<IP_ADAPTER_INFO *>(malloc(count * sizeof *kept));
    if (!kept)
        return;
    int n = 0;
    for (int pass = 0; pass < 2; pass++) {
        for (int i = 0; i < count; i++) {
            if (AdapterIsUp(info[i]) && AdapterHasGateway(info[i]) == (pass == 0))
                kept[n++] = info[i];
        }
    }
    if (n > 0) {
        for (int i = 0; i < n; i++) {
            info[i] = kept[i];
            info[i].Next = i + 1 < n ? &info[i + 1] : nullptr;
        }
    }
    free(kept);
}

// The interface table names an adapter "\DEVICE\TCPIP_{...}" where the
// adapter list says "{...}"; the device names both alike.
void StripInterfacePrefixes(IP_INTERFACE_INFO *info)
{
    static const WCHAR kPrefix[] = L"\\DEVICE\\TCPIP_";
    const int prefixLength = (int)(sizeof kPrefix / sizeof kPrefix[0]) - 1;
    for (LONG i = 0; i < info->NumAdapters; i++) {
        WCHAR *name = info->Adapter[i].Name;
        name[MAX_ADAPTER_NAME - 1] = 0;
        if (_wcsnicmp(name, kPrefix, prefixLength) == 0)
            memmove(name, name + prefixLength, (wcslen(name + prefixLength) + 1) * sizeof(WCHAR));
    }
}
#endif

} // namespace

namespace platform {

int GetSystemMetrics(int index)
{
    HWND screen = DeviceScreenWindow();
    if (screen && (index == SM_CXSCREEN || index == SM_CYSCREEN)) {
        RECT rc;
        ::GetClientRect(screen, &rc);
        return index == SM_CXSCREEN ? rc.right : rc.bottom;
    }
    return ::GetSystemMetrics(index);
}

HDC GetDC(HWND window)
{
    if (!window)
        window = DeviceScreenWindow();
    return ::GetDC(window);
}

int ReleaseDC(HWND window, HDC dc)
{
#ifndef _WIN32_WCE
    // The device screen's DC came from the host's screen window here.
    if (!window)
        window = ::WindowFromDC(dc);
#endif
    return ::ReleaseDC(window, dc);
}

HWND FindWindowW(LPCWSTR className, LPCWSTR windowName)
{
    HWND found = ::FindWindowW(className, windowName);
#ifndef _WIN32_WCE
    // The host's taskbar is a child of its emulated screen, where a top-level
    // search does not look.
    HWND screen = DeviceScreenWindow();
    if (!found && screen)
        found = ::FindWindowExW(screen, nullptr, className, windowName);
#endif
    return found;
}

void GetLocalTime(SYSTEMTIME *time)
{
    ::GetLocalTime(time);
}

DWORD GetTickCount()
{
    return ::GetTickCount();
}

BOOL SHGetSpecialFolderPathW(HWND owner, LPWSTR path, int csidl, BOOL create)
{
#ifdef _WIN32_WCE
    // The device exports it without the W.
    return ::SHGetSpecialFolderPath(owner, path, csidl, create);
#else
    return ::SHGetSpecialFolderPathW(owner, path, csidl, create);
#endif
}

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    return ::MessageBoxW(owner, text, caption, type);
}

INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate, HWND owner,
                                DLGPROC proc, LPARAM param)
{
#ifdef _WIN32_WCE
    return ::DialogBoxIndirectParamW(instance, dialogTemplate, owner, proc, param);
#else
    HWND screen = DeviceScreenWindow();
    RECT rc = {};
    if (screen)
        ::GetClientRect(screen, &rc);
    return RunDeviceDialog(screen, rc.right > 320 || rc.bottom > 320, instance, dialogTemplate, owner,
                           proc, param);
#endif
}

BOOL CreateProcessW(LPCWSTR application, LPWSTR commandLine)
{
    PROCESS_INFORMATION pi = {};
#ifdef _WIN32_WCE
    // The device takes no startup information, and no security, inheritance,
    // environment or folder either.
    if (!::CreateProcessW(application, commandLine, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          nullptr, &pi))
        return FALSE;
#else
    STARTUPINFOW si = {};
    si.cb = sizeof si;
    if (!::CreateProcessW(application, commandLine, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &si, &pi))
        return FALSE;
#endif
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return TRUE;
}

DWORD GetNumberOfInterfaces(PDWORD count)
{
    return ::GetNumberOfInterfaces(count);
}

DWORD GetAdaptersInfo(PIP_ADAPTER_INFO info, PULONG size)
{
    DWORD result = ::GetAdaptersInfo(info, size);
#ifndef _WIN32_WCE
    if (result == NO_ERROR && info) {
        ArrangeDesktopAdapters(info);
        // The desktop leaves the current address unset (reserved there); the
        // device points it at the adapter's address, as here.
        for (IP_ADAPTER_INFO *a = info; a; a = a->Next)
            a->CurrentIpAddress = &a->IpAddressList;
    }
#endif
    return result;
}

DWORD GetInterfaceInfo(PIP_INTERFACE_INFO info, PULONG size)
{
    DWORD result = ::GetInterfaceInfo(info, size);
#ifndef _WIN32_WCE
    if (result == NO_ERROR && info)
        StripInterfacePrefixes(info);
#endif
    return result;
}

DWORD GetIfEntry(PMIB_IFROW row)
{
    return ::GetIfEntry(row);
}

} // namespace platform
