// logcheck.h: finds the records of a damaged month's log again, reports what is wrong and mends it; no Windows header.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "trafficlog/logformat.h"
#include "trafficlog/logparse.h"

// A month's file holds at most 744 records (8,928 bytes); beyond this much it
// is not looked into record by record.
#define LOG_CHECK_MAX_BYTES (1 << 20)

// A whole record where the file holds one, once cut bytes are stepped over.
struct LogRecordAt {
    size_t offset;
    TrafficLogFields fields;
};

// Bytes of a record that a crash or a full card cut short: the writer appends
// after them, so every record after is read out of step by `length` bytes.
struct LogCutAt {
    size_t offset, length;
};

struct LogCheckReport {
    size_t size;
    bool tooLarge;                       // nothing else was looked at
    std::vector<LogRecordAt> records;    // in file order
    std::vector<LogCutAt> cuts;
    std::vector<size_t> outOfRange;      // indexes into records
    std::vector<size_t> duplicates;      // a (day, hour) seen before; indexes
    std::vector<size_t> outOfOrder;      // before the valid record ahead of it; indexes
};

// Splits the bytes into the records the writer laid down and the cut records
// between them, choosing the split that finds the most records of the month
// (year and month 0: any day 1-31). Sound means no cut, nothing out of range
// and no duplicate; records out of order are only reported (the writer
// appends them so when the clock goes back).
void CheckTrafficLog(const unsigned char *bytes, size_t size, int year, int month, LogCheckReport *report);
bool LogIsSound(const LogCheckReport &report);

struct LogRepairCounts {
    size_t kept, merged, dropped, cutBytes;
    size_t keptApart;   // duplicates whose sum would pass 2^32, left as they were
};

// The records realigned, invalid ones dropped, duplicates added into the
// first of them, in the order they first appear; reserved bytes 0.
std::vector<unsigned char> RepairTrafficLog(const LogCheckReport &report, int year, int month,
                                            LogRepairCounts *counts);
