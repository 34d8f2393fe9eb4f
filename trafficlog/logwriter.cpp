// logwriter.cpp: the traffic log writer: one record per local day and hour, found or appended every tick.
#include "trafficlog/trafficlog.h"
#include "trafficlog/logparse.h"
#include "platform/platform.h"

#include <shlobj.h>
#include <string.h>

// A read that fails is tried again at once, but not for ever: after this many
// failures in a row the tick's increments are dropped, as a failed open drops
// them.
static const int kReadAttempts = 3;

// A full month is 744 records; one read takes it all, a larger (damaged)
// file takes a few.
static const DWORD kChunkBytes = 744 * sizeof(TrafficLogRecord);

void TrafficLogPath(int year, int month, WCHAR *path)
{
    WCHAR name[16];
    wsprintfW(name, L"\\%04d%02d.log", year, month);
    int folder = lstrlenW(TrafficLogFolder), length = lstrlenW(name);
    if (folder + length >= MAX_PATH) {
        path[0] = 0;
        return;
    }
    lstrcpyW(path, TrafficLogFolder);
    lstrcpyW(path + folder, name);
}

BOOL EnsureDataFolders(HWND owner)
{
    WCHAR folder[MAX_PATH + 32];
    if (!platform::SHGetSpecialFolderPathW(owner, folder, CSIDL_PROGRAM_FILES, FALSE))
        return 0;
    lstrcatW(folder, L"\\Ostrik");
    CreateDirectoryW(folder, nullptr);
    lstrcatW(folder, L"\\Quorvane");
    return CreateDirectoryW(folder, nullptr) ? 1 : 0;
}

void LogTraffic(HWND owner, DWORD received, DWORD transmitted)
{
    // A month without traffic gets no file, and no folder either.
    if (received == 0 && transmitted == 0)
        return;
    EnsureDataFolders(owner);

    // One reading of the clock names both the file and the record, so a tick
    // across midnight books to the new hour in the new file.
    SYSTEMTIME now;
    platform::GetLocalTime(&now);
    WCHAR path[MAX_PATH];
    TrafficLogPath(now.wYear, now.wMonth, path);
    HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (!file || file == INVALID_HANDLE_VALUE)
        return;

    // The month is read in a few large reads and searched in memory, with
    // one record buffer for the whole scan: a cut tail is laid over the
    // previous record's bytes and, unless it names this hour, matches
    // nothing, and the new record goes after it. Keep it so; readers see the
    // same file.
    BYTE month[kChunkBytes];
    TrafficLogRecord record = {};
    DWORD written = 0;
    int failures = 0;
    for (;;) {
        DWORD got = 0;
        BOOL ok = ReadFile(file, month, sizeof month, &got, nullptr);
        size_t at = FindTrafficLogRecord(reinterpret_cast<unsigned char *>(&record), month, got, now.wDay,
                                         now.wHour);
        if (at < got) {
            record.received += received;
            record.transmitted += transmitted;
            SetFilePointer(file, -(LONG)(got - at), nullptr, FILE_CURRENT);
            WriteFile(file, &record, sizeof record, &written, nullptr);
            CloseHandle(file);
            return;
        }
        if (!ok) {
            if (++failures >= kReadAttempts)
                break;
            continue;
        }
        failures = 0;
        if (got == 0) {
            TrafficLogRecord fresh = {};
            fresh.day = (signed char)now.wDay;
            fresh.hour = (signed char)now.wHour;
            fresh.received = received;
            fresh.transmitted = transmitted;
            // A full disk may take part of the record: cut it off again, or
            // it would misalign every record appended after it.
            if (!WriteFile(file, &fresh, sizeof fresh, &written, nullptr) || written != sizeof fresh) {
                if (written > 0 && written < sizeof fresh) {
                    SetFilePointer(file, -(LONG)written, nullptr, FILE_CURRENT);
                    SetEndOfFile(file);
                }
            }
            break;
        }
    }
    CloseHandle(file);
}
