// fuzz_logname.cpp: libFuzzer target for the year and month a log's file name stands for.
// fuzz sources: trafficlog/logformat.cpp
// Input: a file name, up to its first zero byte.
#include "tests/native/fuzzing.h"
#include "trafficlog/logformat.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    size_t length = strnlen(reinterpret_cast<const char *>(data), size);
    Exact name(length + 1);
    memcpy(name.bytes, data, length);
    const char *text = reinterpret_cast<const char *>(name.bytes);

    // "YYYYMM.log", six digits and a month 1-12, nothing else.
    bool shaped = length == 10 && memcmp(text + 6, ".log", 4) == 0;
    for (int i = 0; shaped && i < 6; i++)
        shaped = text[i] >= '0' && text[i] <= '9';
    int m = shaped ? (text[4] - '0') * 10 + (text[5] - '0') : 0;
    bool expected = shaped && m >= 1 && m <= 12;

    int year = -1, month = -1;
    bool parsed = ParseTrafficLogFileName(text, &year, &month);
    PROMISE(parsed == expected);
    if (!parsed)
        return 0;
    // The name the writer gives that month is this one.
    char again[TRAFFIC_LOG_NAME_CHARS];
    PROMISE(TrafficLogFileName(year, month, again, sizeof again));
    PROMISE(strcmp(again, text) == 0);
    int days = DaysInMonth(year, month);
    PROMISE(days >= 28 && days <= 31);
    return 0;
}
