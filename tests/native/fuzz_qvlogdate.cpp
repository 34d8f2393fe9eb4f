// fuzz_qvlogdate.cpp: libFuzzer target for the dates qvlog's command line takes.
// fuzz sources: tools/qvlog/dates.cpp trafficlog/logformat.cpp
// Input: the parts wanted (1 + first byte % 3: YYYY, YYYY-MM, YYYY-MM-DD), then the argument up to a zero byte.
#include "tests/native/fuzzing.h"
#include "tools/qvlog/dates.h"
#include "trafficlog/logformat.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    int parts = 1 + data[0] % 3;
    Exact argument(nullptr, strnlen(reinterpret_cast<const char *>(data + 1), size - 1) + 1);
    memcpy(argument.bytes, data + 1, argument.size - 1);
    QvlogDate date = {-1, -1, -1};
    if (!ParseQvlogDate(argument.as<char>(), parts, &date))
        return 0;
    // Only a date of the calendar in exactly the shape asked for: written
    // back, it is the argument with the parts not given as 1.
    char again[16], given[16];
    snprintf(again, sizeof again, "%04d-%02d-%02d", date.year, date.month, date.day);
    snprintf(given, sizeof given, "%s%s", argument.as<char>(), &"-01-01"[3 * (parts - 1)]);
    PROMISE(argument.size == 2 + 3 * (size_t)parts && strcmp(again, given) == 0 && date.year >= 1 && date.month >= 1 &&
            date.month <= 12 && date.day >= 1 && date.day <= DaysInMonth(date.year, date.month));
    return 0;
}
