// platform.h: the one door through which Quorvane reaches the device.
//
// Everything that differs between a handheld, a desktop and a test lives
// behind these functions. They keep the platform's own names, in namespace
// platform. Two implementations exist and the link picks one: win32/ (the
// device's calls under _WIN32_WCE, desktop Win32 otherwise) and fake/ (a
// scriptable device for the unit tests).
#pragma once

#include <winsock2.h>
#include <windows.h>
#include <iphlpapi.h>

namespace platform {

// Screen. On a desktop the "device screen" is the Today host's emulated
// screen window when the host runs, else the real screen.
int GetSystemMetrics(int index);              // SM_CXSCREEN, SM_CYSCREEN
HDC GetDC(HWND window);                       // null window: the device screen
int ReleaseDC(HWND window, HDC dc);
HWND FindWindowW(LPCWSTR className, LPCWSTR windowName);

// Clock.
void GetLocalTime(SYSTEMTIME *time);
DWORD GetTickCount();

// Shell.
BOOL SHGetSpecialFolderPathW(HWND owner, LPWSTR path, int csidl, BOOL create);
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate,
                                HWND owner, DLGPROC proc, LPARAM param);
// Starts a program without waiting for it; default everything else.
BOOL CreateProcessW(LPCWSTR application, LPWSTR commandLine);

// IP helper.
DWORD GetNumberOfInterfaces(PDWORD count);
DWORD GetAdaptersInfo(PIP_ADAPTER_INFO info, PULONG size);
DWORD GetInterfaceInfo(PIP_INTERFACE_INFO info, PULONG size);
DWORD GetIfEntry(PMIB_IFROW row);

} // namespace platform
