// clock_test.cpp: a clock set back and moved on while the tick runs books every byte once.
#include "tests/support.h"
#include "tests/logfile.h"

#include <cstring>
#include <set>

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
    size_t hoursBooked[2] = {};
    for (int month : {1, 2}) {
        Bytes bytes = FileBytes(LogPath(2026, month));
        EXPECT_EQ(0u, bytes.size() % 12) << month;
        auto field = [&](size_t at) { DWORD v; memcpy(&v, &bytes[at], 4); return v; };   // little-endian, as here
        std::set<int> hours;
        for (size_t at = 0; at + 12 <= bytes.size(); at += 12) {
            EXPECT_TRUE(hours.insert(bytes[at] * 24 + bytes[at + 1]).second) << month << ": hour twice at " << at;
            received += field(at + 4);
            transmitted += field(at + 8);
        }
        hoursBooked[month - 1] = hours.size();
    }
    EXPECT_EQ((unsigned long long)(adapter.inOctets - firstIn), received);
    EXPECT_EQ((unsigned long long)(adapter.outOctets - firstOut), transmitted);
    // January: hours 21, 22 and 23 of the 31st; February: hours 0, 1, 2, 6 and 7 of the 1st.
    EXPECT_TRUE(hoursBooked[0] == 3 && hoursBooked[1] == 5) << hoursBooked[0] << " " << hoursBooked[1];
}

} // namespace
