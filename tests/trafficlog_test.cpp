// trafficlog_test.cpp: the monthly log files, byte for byte, as the writer leaves them.
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

using TrafficLog = DeviceTest;

TEST_F(TrafficLog, PathIsTheDataFolderAndTheMonthAndNoTrafficMakesNoFile)
{
    std::wstring folder = g_item.dataFolder;
    EXPECT_EQ(folder + L"\\200612.log", LogPath(2006, 12));
    EXPECT_EQ(folder + L"\\099903.log", LogPath(999, 3));
    DeleteTree(folder);
    LogTraffic(nullptr, 0, 0);   // no traffic: no file, no folder
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(folder.c_str()));
    LogTraffic(nullptr, 0x01020304, 0x0A0B0C0D);
    EXPECT_EQ(Bytes({15, 10, 0, 0, 0x04, 0x03, 0x02, 0x01, 0x0D, 0x0C, 0x0B, 0x0A}), FileBytes(LogPath(2026, 1)));
    // No room for the name: no path at all rather than a cut one.
    std::fill(g_item.dataFolder, g_item.dataFolder + 255, L'a');
    g_item.dataFolder[255] = 0;
    EXPECT_EQ(L"", LogPath(2026, 1));
}

TEST_F(TrafficLog, TheHoursRecordIsFoundWhereverItLiesOrAppended)
{
    struct Tick { int day, hour; DWORD received, transmitted; };
    const Bytes hour = Record(15, 10, 100, 200), added = Record(15, 10, 101, 202), tail = {3, 4, 0, 0, 9};
    // Hours, days and months booked one after another are the clock's test.
    const struct { const char *what; Bytes before; std::vector<Tick> ticks; Bytes after; } cases[] = {
        {"fields wrap without check", {}, {{15, 10, 0xFFFFFFF0, 7}, {15, 10, 0x20, 0xFFFFFFFF}}, Record(15, 10, 0x10, 6)},
        {"clock set back", Record(15, 9, 50, 60) + Record(15, 10, 70, 80), {{15, 9, 1, 2}},
         Record(15, 9, 51, 62) + Record(15, 10, 70, 80)},
        {"last record of the first read", Filler(743) + hour + Filler(50), {{15, 10, 1, 2}}, Filler(743) + added + Filler(50)},
        {"first record of the second read", Filler(744) + hour + Filler(50), {{15, 10, 1, 2}}, Filler(744) + added + Filler(50)},
        {"deep in a damaged month, only the first of two", Filler(2000) + hour + hour, {{15, 10, 1, 2}},
         Filler(2000) + added + hour},
        // A cut tail is laid over the previous record's bytes: it matches
        // nothing and the new record goes after it, misaligned from there on...
        {"cut tail", Record(15, 9, 50, 60) + tail, {{15, 10, 1, 2}}, Record(15, 9, 50, 60) + tail + Record(15, 10, 1, 2)},
        {"cut tail in the second read", Filler(744) + tail, {{15, 10, 1, 2}}, Filler(744) + tail + Record(15, 10, 1, 2)},
        // ...unless it names this hour: those counts plus the tick's are written from where it starts.
        {"cut tail of this hour", Record(15, 9, 50, 60) + Bytes{15, 10, 0, 0, 9}, {{15, 10, 1, 2}},
         Record(15, 9, 50, 60) + Record(15, 10, 10, 62)},
        {"cut tail of day and hour only", Record(15, 9, 50, 60) + Bytes{15, 10}, {{15, 10, 1, 2}},
         Record(15, 9, 50, 60) + Record(15, 10, 51, 62)},
    };
    for (auto &c : cases) {
        WriteBytes(LogPath(2026, 1), c.before);
        for (const Tick &t : c.ticks) {
            fake::SetTime(2026, 1, t.day, t.hour, 59);   // late in the hour: still booked to it
            LogTraffic(nullptr, t.received, t.transmitted);
        }
        EXPECT_EQ(c.after, FileBytes(LogPath(2026, 1))) << c.what;
    }
}

TEST_F(TrafficLog, AnotherHandleWritingDoesNotLockTheWriterOut)
{
    LogTraffic(nullptr, 1, 1);
    HANDLE other = CreateFileW(LogPath(2026, 1).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, other);
    LogTraffic(nullptr, 1, 1);
    CloseHandle(other);
    EXPECT_EQ(Record(15, 10, 2, 2), FileBytes(LogPath(2026, 1)));
}

// The far end of a pipe serves one record and goes away: every read after it fails.
TEST_F(TrafficLog, FailingReadsDropTheIncrementsInsteadOfHanging)
{
    wsprintfW(g_item.dataFolder, L"\\\\.\\pipe\\quorvane-%lu", GetCurrentProcessId());
    HANDLE pipe = CreateNamedPipeW(LogPath(2026, 1).c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096,
                                   0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, pipe);
    auto serve = [](void *pipe) -> DWORD {
        DWORD written = 0;
        ConnectNamedPipe(pipe, nullptr);
        WriteFile(pipe, Record(15, 9, 1, 1).data(), 12, &written, nullptr);
        return CloseHandle(pipe) ? 0 : 1;
    };
    auto tick = [](void *) -> DWORD { LogTraffic(nullptr, 1000, 1000); return 0; };
    HANDLE threads[2] = {CreateThread(nullptr, 0, serve, pipe, 0, nullptr),
                         CreateThread(nullptr, 0, tick, nullptr, 0, nullptr)};
    DWORD waited = WaitForMultipleObjects(2, threads, TRUE, 10000);
    EXPECT_EQ(WAIT_OBJECT_0, waited) << "the writer kept retrying its read, or never opened the log";
    for (HANDLE thread : threads) {
        if (waited != WAIT_OBJECT_0)
            TerminateThread(thread, 1);
        CloseHandle(thread);
    }
}

} // namespace
