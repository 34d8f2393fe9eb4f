// clock_test.cpp: a clock set back and moved on while the tick runs books every byte once.
#include "tests/support.h"

#include <map>
#include <set>
#include <utility>

namespace {

struct Totals {
    unsigned long long received = 0, transmitted = 0;
};

// Every month file in the data folder, summed; each file must be whole
// records with no (day, hour) twice.
Totals SumOfLogs(std::map<std::wstring, size_t> *records)
{
    Totals sum;
    std::wstring folder = g_item.dataFolder;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"\\*.log").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return sum;
    do {
        std::wstring path = folder + L"\\" + found.cFileName;
        HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        BYTE bytes[16384];
        DWORD got = 0;
        ReadFile(file, bytes, sizeof bytes, &got, nullptr);
        CloseHandle(file);
        EXPECT_EQ(0u, got % 12) << found.cFileName;
        std::set<std::pair<int, int>> hours;
        for (DWORD at = 0; at + 12 <= got; at += 12) {
            EXPECT_TRUE(hours.insert({(signed char)bytes[at], (signed char)bytes[at + 1]}).second)
                << found.cFileName << " day " << (int)bytes[at] << " hour " << (int)bytes[at + 1] << " twice";
            DWORD received, transmitted;
            memcpy(&received, bytes + at + 4, 4);
            memcpy(&transmitted, bytes + at + 8, 4);
            sum.received += received;
            sum.transmitted += transmitted;
        }
        (*records)[found.cFileName] = got / 12;
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return sum;
}

class Clock : public DeviceTest {};

TEST_F(Clock, SetBackAnHourAndAMonthAndOnAcrossTheMonthsEndEveryByteIsBookedOnce)
{
    fake::g_device.adapters.push_back({"{ETH}", L"", MIB_IF_TYPE_ETHERNET, 4, 1000, 2000});
    fake::Adapter &adapter = fake::g_device.adapters[0];
    fake::SetTime(2026, 1, 31, 21, 0);
    OnTick(nullptr);   // primes the counters
    DWORD firstIn = adapter.inOctets, firstOut = adapter.outOctets;

    // Each step: where the clock stands, then ticks 13 minutes apart.
    const struct { int year, month, day, hour, minute, ticks; const char *what; } steps[] = {
        {2026, 1, 31, 21, 0, 24, "on across midnight into February"},
        {2026, 2, 1, 1, 10, 6, "set back an hour that already has a record"},
        {2026, 1, 31, 23, 30, 5, "set back a month, into January's last hour"},
        {2026, 2, 1, 6, 0, 8, "on again"},
    };
    int k = 0;
    for (auto &step : steps) {
        int minutes = step.hour * 60 + step.minute;
        for (int t = 0; t < step.ticks; t++, k++, minutes += 13) {
            int day = step.day + minutes / (24 * 60);
            int month = step.month, year = step.year;
            if (month == 1 && day > 31) {
                month = 2;
                day -= 31;
            }
            fake::SetTime(year, month, day, minutes / 60 % 24, minutes % 60);
            adapter.inOctets += 1 + (k * 7919) % 50000;
            adapter.outOctets += (k * 104729) % 30000;
            OnTick(nullptr);
        }
    }

    std::map<std::wstring, size_t> records;
    Totals sum = SumOfLogs(&records);
    EXPECT_EQ((unsigned long long)(adapter.inOctets - firstIn), sum.received);
    EXPECT_EQ((unsigned long long)(adapter.outOctets - firstOut), sum.transmitted);
    // January: hours 21, 22 and 23 of the 31st; February: hours 0, 1, 2, 6 and 7 of the 1st.
    EXPECT_EQ(3u, records[L"202601.log"]);
    EXPECT_EQ(5u, records[L"202602.log"]);
}

} // namespace
