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

// The item's own drawing resources (its surface, pens and screen snapshots):
// made here so that a test can run GDI short and fail the Nth creation. An
// icon of width and height 0 is the system's icon size on the device, not
// the image's own (as if LR_DEFAULTSIZE were set): always pass the size.
HDC CreateCompatibleDC(HDC dc);
HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
HPEN CreatePen(int style, int width, COLORREF colour);
HANDLE LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags);

} // namespace platform
