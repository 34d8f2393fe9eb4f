// fuzz_logsearch.cpp: libFuzzer target for the log writer's search of a month for the hour it books to.
// fuzz sources: trafficlog/logparse.cpp
// Input: the day byte, the hour byte, the size of the writer's reads in records less one, then the month's bytes.
#include "tests/native/fuzzing.h"
#include "trafficlog/logparse.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 3)
        return 0;
    int day = (signed char)data[0], hour = (signed char)data[1];
    File month = {data + 3, size - 3, TRAFFIC_RECORD_BYTES, TRAFFIC_RECORD_BYTES * (size_t)(1 + data[2] % 16)};
    size_t expected = month.size, found = month.size;
    unsigned char want[TRAFFIC_RECORD_BYTES] = {0}, record[TRAFFIC_RECORD_BYTES] = {0};
    // The reference: the first record that names the day and hour; found,
    // the record to add to (a cut tail over the one before); not, the last
    // record read, which a next read would lie over.
    month.Records([&](const unsigned char *r, size_t at) {
        if (expected < month.size)
            return;
        memcpy(want, r, TRAFFIC_RECORD_BYTES);
        expected = (signed char)r[0] == day && (signed char)r[1] == hour ? at : expected;
    });
    // Searched in the writer's reads, whole records in all but the last.
    month.Reads([&](const Exact &read, size_t start) {
        size_t at = found == month.size ? FindTrafficLogRecord(record, read.bytes, read.size, day, hour) : read.size;
        found = at == read.size ? found : start + at;
    });
    PROMISE(found == expected && memcmp(record, want, TRAFFIC_RECORD_BYTES) == 0);
    return 0;
}
