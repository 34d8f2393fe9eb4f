// trafficlog.h: the monthly traffic log: its record, its file name, and the writer the tick calls.
#pragma once

#include <windows.h>

// One hour of one day in a month's file "YYYYMM.log": 12 bytes, little-endian,
// in the order the hours first saw traffic. An hour without traffic has none.
#pragma pack(push, 1)
struct TrafficLogRecord {
    signed char day;          // 1-31, local time
    signed char hour;         // 0-23, local time
    BYTE reserved[2];         // written as 0, never read
    DWORD received;           // bytes in that hour, modulo 2^32
    DWORD transmitted;
};
#pragma pack(pop)
static_assert(sizeof(TrafficLogRecord) == 12, "a log record is 12 bytes");

// The folder of the monthly logs, without a trailing separator: the item's
// InstallDir, which the item points this at. The store knows no more of the
// item than this.
extern const WCHAR *const TrafficLogFolder;

// The full path of a month's log in the item's data folder, into a buffer of
// MAX_PATH characters. A folder too long to leave room for the name gives an
// empty path, which no open finds.
void TrafficLogPath(int year, int month, WCHAR *path);

// Creates Program Files\Ostrik and Program Files\Ostrik\Quorvane (whatever
// InstallDir says). Non-zero when the last creation succeeded; 0 when it
// failed (the folder exists already, say) or Program Files is unknown.
BOOL EnsureDataFolders(HWND owner);

// Adds one tick's increments to the record of the current local day and hour
// in this month's file, or appends that record. Increments of (0, 0) touch
// nothing. Failures drop the increments silently.
void LogTraffic(HWND owner, DWORD received, DWORD transmitted);
