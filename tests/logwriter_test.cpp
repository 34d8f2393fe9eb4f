// logwriter_test.cpp: the writer's search of a month it reads in large pieces: past the first piece, and cut tails.
#include "tests/support.h"
#include "tests/logfile.h"

namespace {

// `count` records of days 1-14, so none is the 15th's; a damaged month may
// hold far more than the 744 a read takes at once.
Bytes Filler(int count)
{
    Bytes bytes;
    for (int i = 0; i < count; i++)
        bytes = bytes + Record(1 + i % 14, i % 24, i, 2 * i);
    return bytes;
}

class LogWriter : public DeviceTest {};

TEST_F(LogWriter, TheHoursRecordIsFoundWhereverItLiesAndCutTailsStayAsTheyAre)
{
    const Bytes hour = Record(15, 10, 100, 200), added = Record(15, 10, 101, 202);
    const Bytes tail = {3, 4, 0, 0, 9};
    const struct {
        const char *what;
        Bytes before, after;
    } cases[] = {
        {"last record of the first read", Filler(743) + hour + Filler(50), Filler(743) + added + Filler(50)},
        {"first record of the second read", Filler(744) + hour + Filler(50), Filler(744) + added + Filler(50)},
        {"deep in a damaged month", Filler(2000) + hour + Filler(9), Filler(2000) + added + Filler(9)},
        {"only the first of two is added to", Filler(800) + hour + hour, Filler(800) + added + hour},
        {"not there: appended at the end", Filler(1500), Filler(1500) + Record(15, 10, 1, 2)},
        // A tail read on its own after a full first read: over the last
        // record's bytes, matching nothing; the new record goes after it.
        {"cut tail in the second read", Filler(744) + tail, Filler(744) + tail + Record(15, 10, 1, 2)},
        // A tail of day and hour only, over the previous record's counts: it
        // names this hour, so those counts plus the tick's are written from it.
        {"cut tail naming this hour", Record(15, 9, 50, 60) + Bytes{15, 10},
         Record(15, 9, 50, 60) + Record(15, 10, 51, 62)},
    };
    fake::SetTime(2026, 1, 15, 10, 30);
    for (auto &c : cases) {
        WriteBytes(LogPath(2026, 1), c.before);
        LogTraffic(nullptr, 1, 2);
        EXPECT_EQ(c.after, FileBytes(LogPath(2026, 1))) << c.what;
    }
}

} // namespace
