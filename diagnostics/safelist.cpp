// safelist.cpp: the safe list file (6 bytes a record) and the CSV intruder report.
#include "diagnostics/safelist.h"
#include "diagnostics/listfile.h"
#include "diagnostics/netbios.h"
#include "item/item.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "resources/resource.h"
#include "trafficlog/trafficlog.h"

#include <commctrl.h>
#include <shlobj.h>
#include <string.h>

// One path for all three operations: a doubled separator, which the device
// reads as one, is not read so everywhere.
void SafeListPath(WCHAR *path)
{
    FormatText(path, MAX_PATH, L"%ls\\slist.dat", g_item.dataFolder);
}

static HANDLE OpenExisting(const WCHAR *path)
{
    return CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The next 6-byte record, laid over `record`: a short last one is compared
// over the bytes of the one before (see listparse.h).
static DWORD ReadRecord(HANDLE file, BYTE *record)
{
    return ReadListRecord(file, record, SAFE_RECORD_BYTES);
}

bool SafeListContains(const BYTE *mac)
{
    WCHAR path[MAX_PATH];
    SafeListPath(path);
    HANDLE file = OpenExisting(path);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    BYTE record[SAFE_RECORD_BYTES] = {0};
    bool found = false;
    while (!found && ReadRecord(file, record) > 0)
        found = MacEquals(record, mac);
    CloseHandle(file);
    return found;
}

bool SafeListAdd(const BYTE *mac)
{
    WCHAR path[MAX_PATH];
    SafeListPath(path);
    HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    SetFilePointer(file, 0, nullptr, FILE_END);
    DWORD written = 0;
    WriteFile(file, mac, SAFE_RECORD_BYTES, &written, nullptr);
    CloseHandle(file);
    return true;
}

bool SafeListRemove(HWND owner, const BYTE *mac)
{
    WCHAR path[MAX_PATH], temp[MAX_PATH];
    SafeListPath(path);
    FormatText(temp, MAX_PATH, L"%ls\\tmpslist", g_item.dataFolder);
    HANDLE file, out;
    if (!OpenForRewrite(path, temp, &file, &out))
        return false;
    bool found = false;
    BYTE record[SAFE_RECORD_BYTES] = {0};
    while (ReadRecord(file, record) > 0) {
        if (MacEquals(record, mac)) {
            found = true;
            continue;
        }
        DWORD written = 0;
        WriteFile(out, record, SAFE_RECORD_BYTES, &written, nullptr);
    }
    CloseHandle(file);
    CloseHandle(out);
    if (!DeleteFileW(path)) {
        platform::MessageBoxW(owner, L"Cannot delete host!", L"Error", MB_ICONHAND);
        DeleteFileW(temp);
        return found;
    }
    MoveFileW(temp, path);
    return found;
}

// Appends `text` to `line` (of `size` bytes), cut where it does not fit.
static void Append(char *line, size_t size, const char *text)
{
    size_t n = strlen(line);
    while (*text && n + 1 < size)
        line[n++] = *text++;
    line[n] = 0;
}

static void Narrow(const WCHAR *from, char *to, int size)
{
    // Characters the code page lacks become '?'.
    if (!WideCharToMultiByte(CP_ACP, 0, from, -1, to, size, nullptr, nullptr))
        to[0] = 0;
    to[size - 1] = 0;
}

static void WriteText(HANDLE file, const char *text)
{
    DWORD written = 0;
    WriteFile(file, text, (DWORD)strlen(text), &written, nullptr);
}

void ExportIntruderReport(HWND owner, const BYTE *ownMac)
{
    WCHAR folder[MAX_PATH], path[MAX_PATH + 32];
    if (!platform::SHGetSpecialFolderPathW(owner, folder, CSIDL_PERSONAL, FALSE)) {
        platform::MessageBoxW(owner, L"Output to file error!", L"Infomation", MB_OK);
        return;
    }
    int n = 1;
    for (; n <= REPORT_LAST_NUMBER; n++) {
        FormatText(path, MAX_PATH + 32, L"%ls\\QuorvaneRpt%03d.csv", folder, n);
        HANDLE existing = OpenExisting(path);
        if (existing == INVALID_HANDLE_VALUE)
            break;
        CloseHandle(existing);
    }
    if (n > REPORT_LAST_NUMBER)
        return;
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        platform::MessageBoxW(owner, L"Output to file error!", L"Infomation", MB_OK);
        return;
    }
    WriteText(file, "\"Host\",\"Intruder\",\"IP\",\"Mac Addr\"\n");
    HWND list = GetDlgItem(owner, IDC_INTRUDER_LIST);
    int rows = ListView_GetItemCount(list);
    for (int i = 0; i < rows; i++) {
        WCHAR host[128] = L"", ip[24] = L"", macText[24] = L"";
        ListView_GetItemText(list, i, 0, host, 128);
        ListView_GetItemText(list, i, 1, ip, 24);
        ListView_GetItemText(list, i, 2, macText, 24);
        BYTE mac[6];
        // A row without a MAC is never known: nothing in the safe list is no MAC.
        bool known = ParseMacText(macText, mac) && (SafeListContains(mac) || MacEquals(mac, ownMac));
        char hostA[128 * 2], ipA[24], macA[24], line[400] = "";
        Narrow(host, hostA, sizeof hostA);
        Narrow(ip, ipA, sizeof ipA);
        Narrow(macText, macA, sizeof macA);
        Append(line, sizeof line, "\"");
        Append(line, sizeof line, hostA);
        Append(line, sizeof line, known ? "\",\"No\",\"" : "\",\"Yes\",\"");
        Append(line, sizeof line, ipA);
        Append(line, sizeof line, "\",\"");
        Append(line, sizeof line, macA);
        Append(line, sizeof line, "\"\n");
        WriteText(file, line);
    }
    CloseHandle(file);
    WCHAR message[MAX_PATH + 64];
    FormatText(message, MAX_PATH + 64, L"Data output to: %ls", path);
    platform::MessageBoxW(owner, message, L"Infomation", MB_OK);
}
