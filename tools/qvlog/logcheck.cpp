// logcheck.cpp: finds the records of a damaged month's log again, reports what is wrong and mends it.
#include "tools/qvlog/logcheck.h"

#include <string.h>

namespace {

// Scores of one way to split the file. A size that is no multiple of 12
// forces one cut at least, and the records of the month put it where it is.
// Any cut beyond that has to bring ten records back into step: runs of
// invalid records otherwise pass for cuts around windows that only happen to
// look like records (a small count reads as day 1, hour 0). Zero reserved
// bytes, as the writer leaves them, break ties; among equal splits the
// earliest cut wins: the writer appends whole records right after one, while
// a later cut would have to hold the tail of a record, which no cut leaves.
const long kValidRecord = 100, kZeroReserved = 2, kInvalidRecord = -1, kCut = -1000;

bool Valid(const TrafficLogFields &f, int year, int month)
{
    if (year == 0)
        return f.day >= 1 && f.day <= 31 && f.hour >= 0 && f.hour <= 23;
    return IsTrafficLogSlot(year, month, f.day, f.hour);
}

long RecordScore(const unsigned char *p, int year, int month)
{
    TrafficLogFields f;
    DecodeTrafficLogRecord(p, &f);
    if (!Valid(f, year, month))
        return kInvalidRecord;
    return kValidRecord + (p[2] == 0 && p[3] == 0 ? kZeroReserved : 0);
}

} // namespace

void CheckTrafficLog(const unsigned char *bytes, size_t size, int year, int month, LogCheckReport *report)
{
    *report = LogCheckReport();
    report->size = size;
    if (size > LOG_CHECK_MAX_BYTES) {
        report->tooLarge = true;
        return;
    }
    // best[i]: the best score of the bytes from i to the end; step[i]: how
    // many bytes the best split takes there (12 for a record, 1-11 for a cut).
    std::vector<long> best(size + 1, 0);
    std::vector<unsigned char> step(size + 1, 0);
    for (size_t i = size; i-- > 0;) {
        long top = 0;
        bool any = false;
        if (i + TRAFFIC_RECORD_BYTES <= size) {
            top = RecordScore(bytes + i, year, month) + best[i + TRAFFIC_RECORD_BYTES];
            step[i] = TRAFFIC_RECORD_BYTES;
            any = true;
        }
        for (size_t k = 1; k < TRAFFIC_RECORD_BYTES && i + k <= size; k++) {
            long s = kCut + best[i + k];
            if (!any || s > top || (s == top && step[i] == TRAFFIC_RECORD_BYTES)) {
                top = s;
                step[i] = (unsigned char)k;
                any = true;
            }
        }
        best[i] = top;
    }

    bool seen[32][24];
    memset(seen, 0, sizeof seen);
    int lastDay = 0, lastHour = -1;
    for (size_t i = 0; i < size; i += step[i]) {
        if (step[i] != TRAFFIC_RECORD_BYTES) {
            LogCutAt cut = {i, step[i]};
            report->cuts.push_back(cut);
            continue;
        }
        LogRecordAt r;
        r.offset = i;
        DecodeTrafficLogRecord(bytes + i, &r.fields);
        size_t index = report->records.size();
        report->records.push_back(r);
        const TrafficLogFields &f = r.fields;
        if (!Valid(f, year, month)) {
            report->outOfRange.push_back(index);
            continue;
        }
        if (seen[f.day][f.hour])
            report->duplicates.push_back(index);
        seen[f.day][f.hour] = true;
        if (f.day < lastDay || (f.day == lastDay && f.hour < lastHour))
            report->outOfOrder.push_back(index);
        lastDay = f.day;
        lastHour = f.hour;
    }
}

bool LogIsSound(const LogCheckReport &report)
{
    return !report.tooLarge && report.size > 0 && report.cuts.empty() && report.outOfRange.empty() &&
           report.duplicates.empty();
}

std::vector<unsigned char> RepairTrafficLog(const LogCheckReport &report, int year, int month,
                                            LogRepairCounts *counts)
{
    *counts = LogRepairCounts();
    for (size_t i = 0; i < report.cuts.size(); i++)
        counts->cutBytes += report.cuts[i].length;
    std::vector<TrafficLogFields> kept;
    int first[32][24];   // where a (day, hour) went in `kept`, or -1
    memset(first, 0xff, sizeof first);
    for (size_t i = 0; i < report.records.size(); i++) {
        const TrafficLogFields &f = report.records[i].fields;
        if (!Valid(f, year, month)) {
            counts->dropped++;
            continue;
        }
        int at = first[f.day][f.hour];
        if (at >= 0) {
            TrafficLogFields &into = kept[at];
            // The readers add in doubles; a sum that wraps would read less.
            if ((uint64_t)into.received + f.received <= 0xFFFFFFFFu &&
                (uint64_t)into.transmitted + f.transmitted <= 0xFFFFFFFFu) {
                into.received += f.received;
                into.transmitted += f.transmitted;
                counts->merged++;
                continue;
            }
            counts->keptApart++;
        } else {
            first[f.day][f.hour] = (int)kept.size();
        }
        kept.push_back(f);
    }
    counts->kept = kept.size();
    std::vector<unsigned char> out(kept.size() * TRAFFIC_RECORD_BYTES);
    for (size_t i = 0; i < kept.size(); i++)
        EncodeTrafficLogRecord(&kept[i], &out[i * TRAFFIC_RECORD_BYTES]);
    return out;
}
