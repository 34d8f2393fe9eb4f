// platform_win32.cpp: the real device (Windows CE) and the desktop stand-in for it.
#include "platform/platform.h"
#include "platform/screen.h"

#include <shlobj.h>

namespace {

// On a desktop the Today host plays the device screen in a window of its own;
// without the host the real screen is the device screen.
HWND DeviceScreenWindow()
{
#ifdef _WIN32_WCE
    return nullptr;
#else
    return ::FindWindowW(DEVICE_SCREEN_CLASS, nullptr);
#endif
}

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
    if (!window)
        window = ::WindowFromDC(dc);
    return ::ReleaseDC(window, dc);
}

HWND FindWindowW(LPCWSTR className, LPCWSTR windowName)
{
    return ::FindWindowW(className, windowName);
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
    return ::SHGetSpecialFolderPathW(owner, path, csidl, create);
}

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    return ::MessageBoxW(owner, text, caption, type);
}

INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialogTemplate, HWND owner,
                                DLGPROC proc, LPARAM param)
{
    return ::DialogBoxIndirectParamW(instance, dialogTemplate, owner, proc, param);
}

BOOL CreateProcessW(LPCWSTR application, LPWSTR commandLine)
{
    STARTUPINFOW si = {};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi = {};
    if (!::CreateProcessW(application, commandLine, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &si, &pi))
        return FALSE;
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
    return ::GetAdaptersInfo(info, size);
}

DWORD GetInterfaceInfo(PIP_INTERFACE_INFO info, PULONG size)
{
    return ::GetInterfaceInfo(info, size);
}

DWORD GetIfEntry(PMIB_IFROW row)
{
    return ::GetIfEntry(row);
}

} // namespace platform
