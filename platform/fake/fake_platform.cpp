// fake_platform.cpp: a device whose every answer a test sets.
#include "platform/fake/fake.h"
#include "platform/fake/fake_net.h"
#include "platform/fake/fake_shell.h"
#include "platform/fake/fake_wireless.h"

#include <shlobj.h>
#include <string.h>

namespace fake {

Device g_device;

namespace {

struct Failure {
    int countdown;   // calls until the failing one; 0: none armed
    bool sticky;
    bool failing;    // sticky and reached
};
Failure g_failures[kCallCount];

void FreeScreen()
{
    if (g_device.screenDC) {
        SelectObject(g_device.screenDC, g_device.screenOld);
        DeleteDC(g_device.screenDC);
    }
    if (g_device.screenBitmap)
        DeleteObject(g_device.screenBitmap);
    g_device.screenDC = nullptr;
    g_device.screenBitmap = nullptr;
}

} // namespace

void FailCall(Call call, int nth, bool fromThenOn)
{
    g_failures[call].countdown = nth;
    g_failures[call].sticky = fromThenOn;
    g_failures[call].failing = false;
}

bool ShouldFail(Call call)
{
    Failure &f = g_failures[call];
    if (f.failing)
        return true;
    if (f.countdown == 0)
        return false;
    if (--f.countdown > 0)
        return false;
    f.failing = f.sticky;
    return true;
}

void SetScreen(int width, int height)
{
    FreeScreen();
    g_device.screenWidth = width;
    g_device.screenHeight = height;
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = width;
    bi.bmiHeader.biHeight = -height;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    g_device.screenBitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    g_device.screenDC = CreateCompatibleDC(nullptr);
    g_device.screenOld = SelectObject(g_device.screenDC, g_device.screenBitmap);
    PatBlt(g_device.screenDC, 0, 0, width, height, WHITENESS);
}

void SetTime(int year, int month, int day, int hour, int minute, int second)
{
    SYSTEMTIME t = {};
    t.wYear = (WORD)year;
    t.wMonth = (WORD)month;
    t.wDay = (WORD)day;
    t.wHour = (WORD)hour;
    t.wMinute = (WORD)minute;
    t.wSecond = (WORD)second;
    g_device.localTime = t;
}

void Reset(const std::wstring &root)
{
    FreeScreen();
    g_device = Device();
    memset(g_failures, 0, sizeof g_failures);
    SetScreen(240, 320);
    SetTime(2026, 1, 15, 10);
    g_device.tickCount = 1000;
    CreateDirectoryW(root.c_str(), nullptr);
    g_device.programFiles = root + L"\\Program Files";
    g_device.personal = root + L"\\My Documents";
    CreateDirectoryW(g_device.programFiles.c_str(), nullptr);
    CreateDirectoryW(g_device.personal.c_str(), nullptr);
    g_device.messageBoxAnswer = IDOK;
    g_device.dialogAnswer = IDOK;
    ResetWireless();
    ResetShell();
    ResetNet();
}

COLORREF ScreenPixel(int x, int y)
{
    return GetPixel(g_device.screenDC, x, y);
}

int TemplateId(HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate)
{
    for (int id = 1; id < 1000; id++) {
        HRSRC res = FindResourceW(instance, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(5) /* RT_DIALOG */);
        if (res && LockResource(LoadResource(instance, res)) == dialogTemplate)
            return id;
    }
    return 0;
}

} // namespace fake

using fake::g_device;
using fake::ShouldFail;

namespace platform {

int GetSystemMetrics(int index)
{
    if (index == SM_CXSCREEN)
        return g_device.screenWidth;
    if (index == SM_CYSCREEN)
        return g_device.screenHeight;
    return ::GetSystemMetrics(index);
}

HDC GetDC(HWND window)
{
    if (window)
        return ::GetDC(window);
    if (ShouldFail(fake::kGetDC))
        return nullptr;
    g_device.screenDCsOut++;
    return g_device.screenDC;
}

int ReleaseDC(HWND window, HDC dc)
{
    if (window)
        return ::ReleaseDC(window, dc);
    if (dc == g_device.screenDC)
        g_device.screenDCsOut--;
    return 1;
}

HWND FindWindowW(LPCWSTR className, LPCWSTR windowName)
{
    if (className && lstrcmpW(className, L"HHTaskBar") == 0 && !windowName)
        return g_device.taskbar;
    return nullptr;
}

void GetLocalTime(SYSTEMTIME *time)
{
    *time = g_device.localTime;
}

DWORD GetTickCount()
{
    return g_device.tickCount;
}

BOOL SHGetSpecialFolderPathW(HWND, LPWSTR path, int csidl, BOOL)
{
    if (ShouldFail(fake::kSHGetSpecialFolderPath))
        return FALSE;
    const std::wstring *folder = nullptr;
    if (csidl == CSIDL_PROGRAM_FILES)
        folder = &g_device.programFiles;
    else if (csidl == CSIDL_PERSONAL)
        folder = &g_device.personal;
    if (!folder || folder->empty())
        return FALSE;
    lstrcpynW(path, folder->c_str(), MAX_PATH);
    return TRUE;
}

int MessageBoxW(HWND, LPCWSTR text, LPCWSTR caption, UINT type)
{
    g_device.messageBoxes.push_back({text ? text : L"", caption ? caption : L"", type});
    return g_device.messageBoxAnswer;
}

INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate, HWND owner,
                                DLGPROC proc, LPARAM param)
{
    if (ShouldFail(fake::kDialogBox))
        return -1;
    g_device.dialogs.push_back({dialogTemplate, owner, proc});
    if (g_device.dialogHook)
        return g_device.dialogHook(instance, dialogTemplate, owner, proc, param);
    return g_device.dialogAnswer;
}

BOOL CreateProcessW(LPCWSTR application, LPWSTR commandLine)
{
    if (ShouldFail(fake::kCreateProcess))
        return FALSE;
    g_device.processes.push_back({application ? application : L"", commandLine ? commandLine : L""});
    return TRUE;
}

DWORD GetNumberOfInterfaces(PDWORD count)
{
    if (ShouldFail(fake::kGetNumberOfInterfaces)) {
        *count = 0;
        return ERROR_NOT_SUPPORTED;
    }
    *count = (DWORD)g_device.adapters.size();
    return NO_ERROR;
}

DWORD GetAdaptersInfo(PIP_ADAPTER_INFO info, PULONG size)
{
    if (ShouldFail(fake::kGetAdaptersInfo))
        return ERROR_NOT_SUPPORTED;
    if (g_device.adapters.empty())
        return ERROR_NO_DATA;
    ULONG need = (ULONG)(g_device.adapters.size() * sizeof(IP_ADAPTER_INFO));
    if (!info || *size < need) {
        *size = need;
        return ERROR_BUFFER_OVERFLOW;
    }
    memset(info, 0, need);
    for (size_t i = 0; i < g_device.adapters.size(); i++) {
        const fake::Adapter &a = g_device.adapters[i];
        IP_ADAPTER_INFO &r = info[i];
        r.Next = i + 1 < g_device.adapters.size() ? &info[i + 1] : nullptr;
        lstrcpynA(r.AdapterName, a.name.c_str(), sizeof r.AdapterName);
        lstrcpynA(r.Description, a.name.c_str(), sizeof r.Description);
        r.Type = a.type;
        r.Index = a.index;
        r.DhcpEnabled = 1;
        fake::FillAddressing(a, r);
    }
    return NO_ERROR;
}

DWORD GetInterfaceInfo(PIP_INTERFACE_INFO info, PULONG size)
{
    if (ShouldFail(fake::kGetInterfaceInfo))
        return ERROR_NOT_SUPPORTED;
    ULONG need = (ULONG)(sizeof(LONG) + g_device.adapters.size() * sizeof(IP_ADAPTER_INDEX_MAP));
    if (!info || *size < need) {
        *size = need;
        return ERROR_INSUFFICIENT_BUFFER;
    }
    memset(info, 0, need);
    info->NumAdapters = (LONG)g_device.adapters.size();
    for (size_t i = 0; i < g_device.adapters.size(); i++) {
        const fake::Adapter &a = g_device.adapters[i];
        std::wstring name = a.interfaceName;
        if (name.empty())
            name.assign(a.name.begin(), a.name.end());
        info->Adapter[i].Index = a.index;
        lstrcpynW(info->Adapter[i].Name, name.c_str(), MAX_ADAPTER_NAME);
    }
    return NO_ERROR;
}

DWORD GetIfEntry(PMIB_IFROW row)
{
    if (ShouldFail(fake::kGetIfEntry))
        return ERROR_NOT_SUPPORTED;
    for (const fake::Adapter &a : g_device.adapters) {
        if (a.index == row->dwIndex) {
            row->dwType = a.ifType ? a.ifType : a.type;
            row->dwSpeed = a.speed;
            row->dwInOctets = a.inOctets;
            row->dwOutOctets = a.outOctets;
            return NO_ERROR;
        }
    }
    return ERROR_INVALID_DATA;
}

} // namespace platform
