// clock_test.cpp: a clock set back and moved on while the tick runs books every byte once.
#include "tests/support.h"
#include "tests/logfile.h"

#include <set>
#include <utility>

namespace {

class Clock : public DeviceTest {};

TEST_F(Clock, SetBackAnHourAndAMonthAndOnAcrossTheMonthsEndEveryByteIsBookedOnce)
{
    fake::g_device.adapters.push_back({"{ETH}", L"", MIB_IF_TYPE_ETHERNET, 4, 1000, 2000});
    fake::Adapter &adapter = fake::g_device.adapters[0];
    fake::SetTime(2026, 1, 31, 21, 0);
    OnTick(nullptr);   // primes the counters
    DWORD firstIn = adapter.inOctets, firstOut = adapter.outOctets;

    // Each step: where the clock stands, then ticks 13 minutes apart.
    const struct { int month, day, hour, minute, ticks; const char *what; } steps[] = {
        {1, 31, 21, 0, 24, "on across midnight into February"},
        {2, 1, 1, 10, 6, "set back an hour that already has a record"},
        {1, 31, 23, 30, 5, "set back a month, into January's last hour"},
        {2, 1, 6, 0, 8, "on again"},
    };
    int k = 0;
    for (auto &step : steps) {
        for (int t = 0, minutes = step.hour * 60 + step.minute; t < step.ticks; t++, k++, minutes += 13) {
            int day = step.day + minutes / (24 * 60), month = step.month + (step.month == 1 && day > 31);
            fake::SetTime(2026, month, month == step.month ? day : day - 31, minutes / 60 % 24, minutes % 60);
            adapter.inOctets += 1 + (k * 7919) % 50000;
            adapter.outOctets += (k * 104729) % 30000;
            OnTick(nullptr);
        }
    }

    // Every month file summed: whole records, no (day, hour) twice in a file.
    unsigned long long received = 0, transmitted = 0;
    size_t records[2] = {};
    for (int month : {1, 2}) {
        Bytes bytes = FileBytes(LogPath(2026, month));
        EXPECT_EQ(0u, bytes.size() % 12) << month;
        std::set<std::pair<int, int>> hours;
        for (size_t at = 0; at + 12 <= bytes.size(); at += 12, records[month - 1]++) {
            EXPECT_TRUE(hours.insert({bytes[at], bytes[at + 1]}).second) << month << ": day " << (int)bytes[at] << " hour "
                                                                        << (int)bytes[at + 1] << " twice";
            received += bytes[at + 4] | bytes[at + 5] << 8 | bytes[at + 6] << 16 | (DWORD)bytes[at + 7] << 24;
            transmitted += bytes[at + 8] | bytes[at + 9] << 8 | bytes[at + 10] << 16 | (DWORD)bytes[at + 11] << 24;
        }
    }
    EXPECT_EQ((unsigned long long)(adapter.inOctets - firstIn), received);
    EXPECT_EQ((unsigned long long)(adapter.outOctets - firstOut), transmitted);
    // January: hours 21, 22 and 23 of the 31st; February: hours 0, 1, 2, 6 and 7 of the 1st.
    EXPECT_TRUE(records[0] == 3 && records[1] == 5) << records[0] << " " << records[1];
}

} // namespace
