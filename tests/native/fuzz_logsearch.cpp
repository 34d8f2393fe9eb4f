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
    // Whole records in every read but the last, as the writer reads.
    size_t piece = TRAFFIC_RECORD_BYTES * (1 + data[2] % 16);
    const unsigned char *file = data + 3;
    size_t length = size - 3;

    // The reference: the first record, as the one buffer holds it, that names the day and hour.
    size_t expected = length;
    unsigned char expectedRecord[TRAFFIC_RECORD_BYTES] = {0};
    for (size_t at = 0; at < length; at += TRAFFIC_RECORD_BYTES) {
        LaidRecord(file, length, at, TRAFFIC_RECORD_BYTES, expectedRecord);
        if ((signed char)expectedRecord[0] == day && (signed char)expectedRecord[1] == hour) {
            expected = at;
            break;
        }
    }

    unsigned char record[TRAFFIC_RECORD_BYTES] = {0};
    size_t found = length;
    for (size_t start = 0; start < length && found == length; start += piece) {
        size_t n = length - start < piece ? length - start : piece;
        Exact read(file + start, n);
        size_t at = FindTrafficLogRecord(record, read.bytes, n, day, hour);
        PROMISE(at == n || (at < n && at % TRAFFIC_RECORD_BYTES == 0));
        if (at < n)
            found = start + at;
    }
    PROMISE(found == expected);
    // Found: the record to add to, a cut tail over the bytes before it.
    // Not found: the last record read, which a next read would lie over.
    PROMISE(memcmp(record, expectedRecord, TRAFFIC_RECORD_BYTES) == 0);
    return 0;
}
