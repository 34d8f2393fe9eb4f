// fake.h: the scriptable device the unit tests link instead of the real platform.
#pragma once

#include "platform/platform.h"

#include <string>
#include <vector>

namespace fake {

// Calls that a test can make fail.
enum Call {
    kGetDC,
    kSHGetSpecialFolderPath,
    kDialogBox,
    kCreateProcess,
    kGetNumberOfInterfaces,
    kGetAdaptersInfo,
    kGetInterfaceInfo,
    kGetIfEntry,
    // GDI creations of the item's drawing resources.
    kCreateCompatibleDC,
    kCreateCompatibleBitmap,
    kCreatePen,
    kCallCount
};

// Makes the nth call from now of `call` fail (1 = the next one); with
// `fromThenOn` that call and every later one fail.
void FailCall(Call call, int nth, bool fromThenOn = false);
// True when this call is to fail; the fake's functions ask before they act.
bool ShouldFail(Call call);

struct MessageBoxShown {
    std::wstring text, caption;
    UINT type;
};

struct DialogRun {
    LPCDLGTEMPLATE dialogTemplate;
    HWND owner;
    DLGPROC proc;
};

struct ProcessStarted {
    std::wstring application, commandLine;
};

struct Adapter {
    std::string name;          // AdapterName of GetAdaptersInfo
    std::wstring interfaceName; // Name in GetInterfaceInfo; empty: the widened name, as on the device
    UINT type;                 // MIB_IF_TYPE_*
    DWORD index;
    DWORD inOctets, outOctets;

    // Addressing, for the adapter and DHCP tools; left out, a record reads as
    // before: DHCP on, no addresses, the name as the description.
    const char *description;   // null: the name
    std::vector<BYTE> mac;     // AddressLength and Address
    std::string ip, mask, gateway, dhcpServer;
    bool dhcpOff;
    DWORD leaseObtained, leaseExpires;   // Unix seconds
    bool haveWins;
    std::string wins1, wins2;
    UINT ifType;               // GetIfEntry's dwType; 0: `type`
    DWORD speed;
    std::vector<std::string> dns;
};

struct Device {
    int screenWidth, screenHeight;
    HDC screenDC;              // the device screen: a 32-bit DIB, white at reset
    HBITMAP screenBitmap;
    HGDIOBJ screenOld;
    SYSTEMTIME localTime;
    DWORD tickCount;
    std::wstring programFiles, personal;
    HWND taskbar;              // what FindWindowW(L"HHTaskBar") finds

    int messageBoxAnswer;
    std::vector<MessageBoxShown> messageBoxes;

    // Dialogs are not shown: a run is recorded and answers dialogAnswer, or
    // whatever the hook answers when one is set.
    INT_PTR dialogAnswer;
    INT_PTR (*dialogHook)(HINSTANCE, LPCDLGTEMPLATE, HWND, DLGPROC, LPARAM);
    std::vector<DialogRun> dialogs;

    std::vector<ProcessStarted> processes;

    std::vector<Adapter> adapters;
    int screenDCsOut;          // GetDC(null) minus ReleaseDC
    std::vector<HDC> compatibleDCs;   // every DC platform::CreateCompatibleDC made
};

extern Device g_device;

// A fresh device: a 240 x 320 screen, 2026-01-15 10:00:00, no adapters, the
// folders under `root` (created), nothing recorded, no failures armed.
void Reset(const std::wstring &root);
void SetScreen(int width, int height);
void SetTime(int year, int month, int day, int hour, int minute = 0, int second = 0);
COLORREF ScreenPixel(int x, int y);
// The resource number of a template that a dialog run was given, or 0.
int TemplateId(HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate);

} // namespace fake
