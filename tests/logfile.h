// logfile.h: month log files as bytes, for the tests that write them or read them back.
#pragma once

#include <gtest/gtest.h>
#include <string.h>
#include <windows.h>

#include <string>
#include <vector>

#include "trafficlog/trafficlog.h"

typedef std::vector<BYTE> Bytes;

// One record as the writer lays it out: reserved bytes 0, little-endian fields.
inline Bytes Record(int day, int hour, DWORD received, DWORD transmitted)
{
    Bytes r(12, 0);
    r[0] = (BYTE)day;
    r[1] = (BYTE)hour;
    memcpy(&r[4], &received, 4);
    memcpy(&r[8], &transmitted, 4);
    return r;
}

inline Bytes operator+(Bytes a, const Bytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

inline std::wstring LogPath(int year, int month)
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    return path;
}

// Empty when there is no file; shared as the writer shares it.
inline Bytes FileBytes(const std::wstring &path)
{
    Bytes bytes;
    HANDLE f = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, 0, nullptr);
    if (f == INVALID_HANDLE_VALUE)
        return bytes;
    BYTE buffer[4096];
    DWORD got = 0;
    while (ReadFile(f, buffer, sizeof buffer, &got, nullptr) && got)
        bytes.insert(bytes.end(), buffer, buffer + got);
    CloseHandle(f);
    return bytes;
}

inline void WriteBytes(const std::wstring &path, const Bytes &bytes)
{
    HANDLE f = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, f);
    DWORD written = 0;
    if (!bytes.empty())
        WriteFile(f, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
    CloseHandle(f);
}
