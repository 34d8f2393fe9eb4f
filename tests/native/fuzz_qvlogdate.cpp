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
    size_t length = strnlen(reinterpret_cast<const char *>(data + 1), size - 1);
    Exact argument(length + 1);
    memcpy(argument.bytes, data + 1, length);
    const char *text = reinterpret_cast<const char *>(argument.bytes);

    QvlogDate date = {-1, -1, -1};
    bool parsed = ParseQvlogDate(text, parts, &date);

    // The reference: the exact shape, then a date of the calendar.
    static const char *const kShapes[] = {"dddd", "dddd-dd", "dddd-dd-dd"};
    const char *shape = kShapes[parts - 1];
    bool shaped = length == strlen(shape);
    for (size_t i = 0; shaped && i < length; i++)
        shaped = shape[i] == 'd' ? text[i] >= '0' && text[i] <= '9' : text[i] == '-';
    int y = 0, m = 1, d = 1;
    if (shaped) {
        y = atoi(text);
        m = parts > 1 ? atoi(text + 5) : 1;
        d = parts > 2 ? atoi(text + 8) : 1;
    }
    bool expected = shaped && y >= 1 && m >= 1 && m <= 12 && d >= 1 && d <= DaysInMonth(y, m);
    PROMISE(parsed == expected);
    if (parsed)
        PROMISE(date.year == y && date.month == m && date.day == d);
    return 0;
}
