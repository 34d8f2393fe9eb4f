// qvlog_fixture.h: log records as bytes for both builds' tests, and the months qvlog's tests read; no Windows header.
#pragma once

#include <stdint.h>

#include <vector>

typedef std::vector<unsigned char> LogBytes;

inline LogBytes LogRecord(int day, int hour, uint32_t received, uint32_t transmitted)
{
    LogBytes r(12, 0);
    r[0] = (unsigned char)day;
    r[1] = (unsigned char)hour;
    for (int i = 0; i < 4; i++) {
        r[4 + i] = (unsigned char)(received >> (8 * i));
        r[8 + i] = (unsigned char)(transmitted >> (8 * i));
    }
    return r;
}

inline LogBytes operator+(LogBytes a, const LogBytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// February 2026, sound: its last hour holds a received field one short of
// 2^32, so the turn of the month sits next to the widest field.
inline LogBytes February2026()
{
    return LogRecord(1, 0, 1000, 2000) + LogRecord(28, 23, 4294967295u, 1);
}

// March 2026: hour 5 of day 1 twice, a field near 2^32, and a record cut
// after 5 bytes with two records appended behind it.
inline LogBytes March2026()
{
    LogBytes cut = LogRecord(3, 1, 0x10, 0);
    cut.resize(5);
    return LogRecord(1, 0, 100, 200) + LogRecord(1, 5, 300, 400) + LogRecord(2, 10, 4294967000u, 50) +
           LogRecord(1, 5, 7, 8) + cut + LogRecord(3, 2, 1000, 1000) + LogRecord(31, 23, 5, 6);
}
