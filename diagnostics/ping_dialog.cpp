// ping_dialog.cpp: one echo to a typed or remembered host, and the host list file behind the combo box.
#include "diagnostics/diagnostics.h"
#include "diagnostics/listfile.h"
#include "diagnostics/scan.h"
#include "item/item.h"
#include "platform/net.h"
#include "platform/platform.h"
#include "platform/shell.h"
#include "platform/text.h"
#include "resources/resource.h"
#include "trafficlog/trafficlog.h"

#include <string.h>
#include <wchar.h>

namespace {

bool SipShown = false;

// The next 200-byte record, laid over `record` (see listparse.h): bytes
// read, 0 at the end or after repeated failures.
DWORD ReadHostRecord(HANDLE file, unsigned char *record)
{
    return ReadListRecord(file, record, HOST_RECORD_BYTES);
}

void ShowSip(HWND dialog, bool up)
{
    platform::SHSipPreference(dialog, up ? SIP_UP : SIP_DOWN);
    SipShown = up;
}

void SetLine(HWND dialog, int id, LPCWSTR text)
{
    SetDlgItemTextW(dialog, id, text);
}

// Lifted 26 pixels above the centre, whatever the taskbar: kept so.
void PlaceDialog(HWND dialog)
{
    RECT rc;
    GetWindowRect(dialog, &rc);
    int w = rc.right - rc.left, h = rc.bottom - rc.top;
    int x = (platform::GetSystemMetrics(SM_CXSCREEN) - (w + 1)) / 2;
    int y = (platform::GetSystemMetrics(SM_CYSCREEN) - (h + 1)) / 2 - 26;
    MoveWindow(dialog, x, y, w + 1, h + 1, FALSE);
}

void OnInit(HWND dialog)
{
    // No caption bar; the title only names the window to the desktop.
    SetWindowTextW(dialog, L"Ping");
    PlaceDialog(dialog);
    HWND combo = GetDlgItem(dialog, IDC_PING_HOST);
    SendMessageW(combo, CB_LIMITTEXT, 99, 0);
    LoadHostList(combo);
    WCHAR host[128] = L"";
    if (!ReadSettingString(L"pinghost", host, sizeof host))
        host[0] = 0;
    SetWindowTextW(combo, host);
    ShowSip(dialog, false);
}

void OnPing(HWND dialog)
{
    WCHAR host[256] = L"";
    GetDlgItemTextW(dialog, IDC_PING_HOST, host, 256);
    if (!host[0]) {
        MessageBeep(MB_ICONASTERISK);
        platform::MessageBoxW(dialog, L"Host name is empty", L"Error", 0);
        return;
    }
    if (AddHost(dialog, host))
        SendDlgItemMessageW(dialog, IDC_PING_HOST, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(host));
    ShowSip(dialog, false);
    WriteSettingString(L"pinghost", host);
    SetLine(dialog, IDC_PING_STATUS, L"Pinging...");
    SetLine(dialog, IDC_PING_TIME, L"");
    SetLine(dialog, IDC_PING_MAC, L"");
    // The echo blocks: it runs from the timer, after "Pinging..." is painted.
    EnableWindow(GetDlgItem(dialog, IDC_PING_GO), FALSE);
    SetTimer(dialog, PING_TIMER_ID, 100, nullptr);
}

void OnTimer(HWND dialog, UINT_PTR id)
{
    if (id == PING_TIMER_ID) {
        KillTimer(dialog, PING_TIMER_ID);
        WCHAR host[256] = L"";
        GetDlgItemTextW(dialog, IDC_PING_HOST, host, 256);
        if (host[0]) {
            char narrow[256];
            if (!WideCharToMultiByte(CP_ACP, 0, host, -1, narrow, sizeof narrow, nullptr, nullptr))
                narrow[0] = 0;
            WSADATA wsa;
            platform::WSAStartup(0x0102, &wsa);
            PingHost(dialog, narrow, PING_TIMEOUT_MS);
            platform::WSACleanup();
        }
    }
    EnableWindow(GetDlgItem(dialog, IDC_PING_GO), TRUE);
}

void OnDelete(HWND dialog)
{
    WCHAR host[256] = L"";
    GetDlgItemTextW(dialog, IDC_PING_HOST, host, 256);
    if (!host[0])
        return;
    SetLine(dialog, IDC_PING_STATUS, L"");
    SetLine(dialog, IDC_PING_TIME, L"");
    SetLine(dialog, IDC_PING_MAC, L"");
    if (!DeleteHost(dialog, host))
        return;
    HWND combo = GetDlgItem(dialog, IDC_PING_HOST);
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);
    LoadHostList(combo);
    SetWindowTextW(combo, L"");
}

} // namespace

void HostListPath(WCHAR *path, bool temporary)
{
    FormatText(path, MAX_PATH, L"%ls%ls", g_item.dataFolder, temporary ? L"\\tmphosts.dat" : L"\\hosts.dat");
}

bool LoadHostList(HWND combo)
{
    WCHAR path[MAX_PATH];
    HostListPath(path, false);
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    unsigned char record[HOST_RECORD_BYTES] = {0};
    WCHAR text[HOST_RECORD_CHARS];
    while (ReadHostRecord(file, record) > 0) {
        HostRecordText(record, text);
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    CloseHandle(file);
    return true;
}

bool AddHost(HWND dialog, LPCWSTR host)
{
    EnsureDataFolders(dialog);
    WCHAR path[MAX_PATH];
    HostListPath(path, false);
    HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    unsigned char record[HOST_RECORD_BYTES] = {0};
    WCHAR text[HOST_RECORD_CHARS];
    while (ReadHostRecord(file, record) > 0) {
        HostRecordText(record, text);
        if (SameHostName(text, host)) {
            CloseHandle(file);
            return false;
        }
    }
    HostRecordBytes(host, record);
    SetFilePointer(file, 0, nullptr, FILE_END);
    DWORD written = 0;
    WriteFile(file, record, sizeof record, &written, nullptr);
    CloseHandle(file);
    return true;
}

bool DeleteHost(HWND dialog, LPCWSTR host)
{
    if (platform::MessageBoxW(dialog, L"Are you sure you want to delete this host?", L"Question",
                              MB_YESNO | MB_ICONQUESTION) != IDYES)
        return true;
    WCHAR path[MAX_PATH], temp[MAX_PATH];
    HostListPath(path, false);
    HostListPath(temp, true);
    HANDLE file, out;
    if (!OpenForRewrite(path, temp, &file, &out))
        return false;
    unsigned char record[HOST_RECORD_BYTES] = {0};
    WCHAR text[HOST_RECORD_CHARS];
    while (ReadHostRecord(file, record) > 0) {
        HostRecordText(record, text);
        if (SameHostName(text, host))
            continue;
        DWORD written = 0;
        WriteFile(out, record, sizeof record, &written, nullptr);
    }
    CloseHandle(file);
    DWORD size = GetFileSize(out, nullptr);
    CloseHandle(out);
    if (!DeleteFileW(path)) {
        platform::MessageBoxW(dialog, L"Cannot update host file!", L"Error", 0);
        DeleteFileW(temp);
        return true;
    }
    // Deleting the last host leaves no file at all.
    if (size != 0 && size != INVALID_FILE_SIZE)
        MoveFileW(temp, path);
    else
        DeleteFileW(temp);
    return true;
}

void PingHost(HWND dialog, const char *host, DWORD timeoutMs)
{
    WCHAR line[160];
    DWORD address = platform::inet_addr(host);
    if (address == INADDR_NONE) {
        struct hostent *entry = platform::gethostbyname(host);
        if (!entry || !entry->h_addr_list || !entry->h_addr_list[0]) {
            FormatText(line, 160, L"%ls: %hs", L"Unknown host", host);
            SetLine(dialog, IDC_PING_STATUS, line);
            SetLine(dialog, IDC_PING_TIME, L"");
            return;
        }
        memcpy(&address, entry->h_addr_list[0], 4);
    }
    HANDLE icmp = platform::IcmpCreateFile();
    if (icmp == INVALID_HANDLE_VALUE) {
        SetLine(dialog, IDC_PING_STATUS, L"Error: No ping service");
        SetLine(dialog, IDC_PING_TIME, L"");
        return;
    }
    BYTE data[32];
    IP_OPTION_INFORMATION options;
    FillEchoRequest(data, &options);
    EchoReply reply;
    DWORD replies = platform::IcmpSendEcho(icmp, address, data, 32, &options, reply.bytes, sizeof reply.bytes,
                                           timeoutMs);
    const ICMP_ECHO_REPLY *r = &reply.first;
    if (replies == 0) {
        SetLine(dialog, IDC_PING_STATUS, L"Request timed out.");
        SetLine(dialog, IDC_PING_TIME, L"");
        platform::IcmpCloseHandle(icmp);
        return;
    }
    // A desktop reports "unreachable" as a reply with an error status.
    if (r->Address != address || r->Status != IP_SUCCESS) {
        SetLine(dialog, IDC_PING_STATUS, L"Destination host unreachable.");
        SetLine(dialog, IDC_PING_TIME, L"");
        platform::IcmpCloseHandle(icmp);
        return;
    }
    DWORD rtt = r->RoundTripTime;
    platform::IcmpCloseHandle(icmp);
    const BYTE *a = reinterpret_cast<const BYTE *>(&address);
    FormatText(line, 160, L"Host (%d.%d.%d.%d) is alive", a[0], a[1], a[2], a[3]);
    SetLine(dialog, IDC_PING_STATUS, line);
    FormatText(line, 160, L"Round Trip Time: %d ms", (int)rtt);
    SetLine(dialog, IDC_PING_TIME, line);

    BYTE mac[MAXLEN_PHYSADDR];
    DWORD length = 0;
    if (!FindArpRow(address, mac, &length)) {
        SetLine(dialog, IDC_PING_MAC, L"");
        return;
    }
    int n = FormatText(line, 160, L"MAC Address: ");
    for (DWORD i = 0; i < length && n > 0; i++)
        n += FormatText(line + n, 160 - n, i ? L":%02X" : L"%02X", mac[i]);
    SetLine(dialog, IDC_PING_MAC, line);
}

INT_PTR CALLBACK PingDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    (void)lParam;
    switch (message) {
    case WM_INITDIALOG:
        OnInit(dialog);
        return TRUE;
    case WM_TIMER:
        OnTimer(dialog, wParam);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_PING_GO:
            OnPing(dialog);
            return TRUE;
        case IDC_PING_DELETE:
            OnDelete(dialog);
            return TRUE;
        case IDC_PING_KEYBOARD:
            if (SipShown) {
                ShowSip(dialog, false);
            } else {
                ShowSip(dialog, true);
                SetFocus(GetDlgItem(dialog, IDC_PING_HOST));
            }
            return FALSE;
        case IDC_PING_HOST:
            if (HIWORD(wParam) == CBN_SETFOCUS)
                ShowSip(dialog, true);
            return TRUE;
        case IDOK:
        case IDCANCEL:
            if (SipShown)
                ShowSip(dialog, false);
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        }
        break;
    }
    return FALSE;
}
