// fuzz_logname.cpp: libFuzzer target for the year and month a log's file name stands for.
// fuzz sources: trafficlog/logformat.cpp
// Input: a file name, up to its first zero byte.
#include "tests/native/fuzzing.h"
#include "trafficlog/logformat.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Exact name(nullptr, strnlen(reinterpret_cast<const char *>(data), size) + 1);
    memcpy(name.bytes, data, name.size - 1);
    // Only "YYYYMM.log" with a month 1-12: the name the writer gives that month.
    int year = -1, month = -1;
    char again[TRAFFIC_LOG_NAME_CHARS];
    if (ParseTrafficLogFileName(name.as<char>(), &year, &month))
        PROMISE(month >= 1 && month <= 12 && TrafficLogFileName(year, month, again, sizeof again) &&
                strcmp(again, name.as<char>()) == 0);
    return 0;
}
