// logfile.h: month log files as bytes, for the tests that write them or read them back.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/native/qvlog_fixture.h"
#include "trafficlog/trafficlog.h"

typedef LogBytes Bytes;
// One record as the writer lays it out: reserved bytes 0, little-endian fields.
constexpr auto Record = LogRecord;

inline std::wstring LogPath(int year, int month)
{
    WCHAR path[MAX_PATH];
    TrafficLogPath(year, month, path);
    return path;
}

// Empty when there is no file.
inline Bytes FileBytes(const std::wstring &path)
{
    std::ifstream f(std::filesystem::path(path), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(f), {});
}

inline void WriteBytes(const std::wstring &path, const Bytes &bytes)
{
    std::ofstream(std::filesystem::path(path), std::ios::binary).write((const char *)bytes.data(), bytes.size());
}
