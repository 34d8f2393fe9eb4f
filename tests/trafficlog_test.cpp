// trafficlog_test.cpp: the monthly log files, byte for byte, as the writer leaves them.
#include "tests/support.h"
#include "trafficlog/trafficlog.h"

#include <vector>

namespace {

typedef std::vector<BYTE> Bytes;

Bytes Record(int day, int hour, DWORD received, DWORD transmitted)
{
    Bytes r(12, 0);
    r[0] = (BYTE)day;
    r[1] = (BYTE)hour;
    memcpy(&r[4], &received, 4);
    memcpy(&r[8], &transmitted, 4);
    return r;
}

Bytes operator+(Bytes a, const Bytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes FileBytes(const std::wstring &path)
{
    Bytes bytes;
    HANDLE f = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, 0, nullptr);
    if (f == INVALID_HANDLE_VALUE)
        return bytes;
    BYTE buffer[4096];
    DWORD got = 0;
    while (ReadFile(f, buffer, sizeof buffer, &got, nullptr) && got)
        bytes.insert(bytes.end(), buffer, buffer + got);
    CloseHandle(f);
    return bytes;
}

void WriteBytes(const std::wstring &path, const Bytes &bytes)
{
    HANDLE f = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, f);
    DWORD written = 0;
    WriteFile(f, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
    CloseHandle(f);
}

bool Exists(const std::wstring &path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

class TrafficLog : public DeviceTest {
protected:
    std::wstring Path(int year = 2026, int month = 1)
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(year, month, path);
        return path;
    }
    std::wstring Ostrik() { return fake::g_device.programFiles + L"\\Ostrik"; }
};

TEST_F(TrafficLog, PathIsTheDataFolderAndTheMonth)
{
    std::wstring folder = g_item.dataFolder;
    EXPECT_EQ(folder + L"\\200612.log", Path(2006, 12));
    EXPECT_EQ(folder + L"\\202601.log", Path(2026, 1));
    EXPECT_EQ(folder + L"\\0999" L"03.log", Path(999, 3));

    // No room for the name: no path at all rather than a cut one.
    for (int i = 0; i < 255; i++)
        g_item.dataFolder[i] = L'a';
    g_item.dataFolder[255] = 0;
    EXPECT_EQ(L"", Path());
}

TEST_F(TrafficLog, NoTrafficMakesNoFileAndNoFolder)
{
    DeleteTree(Ostrik());
    LogTraffic(nullptr, 0, 0);
    EXPECT_FALSE(Exists(Ostrik()));
    LogTraffic(nullptr, 1, 0);
    EXPECT_TRUE(Exists(Path()));
}

TEST_F(TrafficLog, FirstTrafficOfAMonthIsOneRecord)
{
    DeleteTree(Ostrik());
    LogTraffic(nullptr, 0x01020304, 0x0A0B0C0D);
    const BYTE expected[12] = {15, 10, 0, 0, 0x04, 0x03, 0x02, 0x01, 0x0D, 0x0C, 0x0B, 0x0A};
    EXPECT_EQ(Bytes(expected, expected + 12), FileBytes(Path()));
}

TEST_F(TrafficLog, OneRecordPerHourInTheOrderTheHoursCame)
{
    LogTraffic(nullptr, 100, 10);
    LogTraffic(nullptr, 200, 0);
    EXPECT_EQ(Record(15, 10, 300, 10), FileBytes(Path()));

    fake::SetTime(2026, 1, 15, 11);
    LogTraffic(nullptr, 1, 2);
    fake::SetTime(2026, 1, 16, 10);   // same hour, next day
    LogTraffic(nullptr, 3, 4);
    EXPECT_EQ(Record(15, 10, 300, 10) + Record(15, 11, 1, 2) + Record(16, 10, 3, 4), FileBytes(Path()));
}

TEST_F(TrafficLog, FieldsWrapAroundWithoutCheck)
{
    LogTraffic(nullptr, 0xFFFFFFF0, 7);
    LogTraffic(nullptr, 0x20, 0xFFFFFFFF);
    EXPECT_EQ(Record(15, 10, 0x10, 6), FileBytes(Path()));
}

TEST_F(TrafficLog, CutTailIsSteppedOverAndTheRecordGoesAfterIt)
{
    const BYTE tail[5] = {3, 4, 0, 0, 9};
    Bytes before = Record(15, 9, 50, 60) + Bytes(tail, tail + 5);
    WriteBytes(Path(), before);
    LogTraffic(nullptr, 1, 2);
    EXPECT_EQ(before + Record(15, 10, 1, 2), FileBytes(Path()));   // misaligned from here on
}

TEST_F(TrafficLog, ClockSetBackAddsToTheEarlierHour)
{
    WriteBytes(Path(), Record(15, 9, 50, 60) + Record(15, 10, 70, 80));
    fake::SetTime(2026, 1, 15, 9, 30);
    LogTraffic(nullptr, 1, 2);
    EXPECT_EQ(Record(15, 9, 51, 62) + Record(15, 10, 70, 80), FileBytes(Path()));
}

TEST_F(TrafficLog, MonthsGetFilesOfTheirOwn)
{
    fake::SetTime(2026, 1, 31, 23, 59, 59);
    LogTraffic(nullptr, 5, 5);
    fake::SetTime(2026, 2, 1, 0);
    LogTraffic(nullptr, 6, 6);
    EXPECT_EQ(Record(31, 23, 5, 5), FileBytes(Path(2026, 1)));
    EXPECT_EQ(Record(1, 0, 6, 6), FileBytes(Path(2026, 2)));
}

TEST_F(TrafficLog, AReaderHoldingTheFileDoesNotLockTheWriterOut)
{
    LogTraffic(nullptr, 1, 1);
    HANDLE reader = CreateFileW(Path().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, reader);
    LogTraffic(nullptr, 1, 1);
    CloseHandle(reader);
    EXPECT_EQ(Record(15, 10, 2, 2), FileBytes(Path()));
}

TEST_F(TrafficLog, FailedOpenDropsTheIncrements)
{
    // The install folder is on a card that is not there.
    std::wstring missing = TestRoot() + L"\\Storage Card";
    lstrcpyW(g_item.dataFolder, (missing + L"\\Logs").c_str());
    DeleteTree(Ostrik());
    LogTraffic(nullptr, 1, 1);
    EXPECT_FALSE(Exists(missing));
    EXPECT_TRUE(Exists(Ostrik() + L"\\Quorvane"));   // the default folders are made all the same

    // The month's name is taken by a folder.
    lstrcpyW(g_item.dataFolder, (Ostrik() + L"\\Quorvane").c_str());
    ASSERT_TRUE(CreateDirectoryW(Path().c_str(), nullptr));
    LogTraffic(nullptr, 1, 1);
    EXPECT_TRUE(GetFileAttributesW(Path().c_str()) & FILE_ATTRIBUTE_DIRECTORY);
}

// A log whose reads fail after the first record: the far end of a pipe
// serves one record and then goes away.
struct PipeLog {
    HANDLE server;
    volatile LONG connected;
};

DWORD WINAPI ServeOneRecordThenClose(void *param)
{
    PipeLog *log = static_cast<PipeLog *>(param);
    if (ConnectNamedPipe(log->server, nullptr) || GetLastError() == ERROR_PIPE_CONNECTED)
        log->connected = 1;
    Bytes record = Record(15, 9, 1, 1);
    DWORD written = 0;
    WriteFile(log->server, record.data(), 12, &written, nullptr);
    CloseHandle(log->server);
    return 0;
}

DWORD WINAPI LogOneTick(void *)
{
    LogTraffic(nullptr, 1000, 1000);
    return 0;
}

TEST_F(TrafficLog, FailingReadsDropTheIncrementsInsteadOfHanging)
{
    WCHAR folder[64];
    wsprintfW(folder, L"\\\\.\\pipe\\quorvane-%lu", GetCurrentProcessId());
    lstrcpyW(g_item.dataFolder, folder);
    PipeLog log = {};
    log.server = CreateNamedPipeW(Path().c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT, 1,
                                  4096, 4096, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, log.server);
    HANDLE server = CreateThread(nullptr, 0, ServeOneRecordThenClose, &log, 0, nullptr);
    HANDLE writer = CreateThread(nullptr, 0, LogOneTick, nullptr, 0, nullptr);
    DWORD waited = WaitForSingleObject(writer, 10000);
    if (waited != WAIT_OBJECT_0)
        TerminateThread(writer, 1);
    EXPECT_EQ(WAIT_OBJECT_0, waited) << "the writer kept retrying its read";
    WaitForSingleObject(server, 10000);
    EXPECT_EQ(1, log.connected);   // the writer did open the log
    CloseHandle(writer);
    CloseHandle(server);
}

TEST_F(TrafficLog, DefaultFoldersAreAlwaysUnderProgramFiles)
{
    WriteSettingString(L"InstallDir", (TestRoot() + L"\\Elsewhere").c_str());
    Attach();
    DeleteTree(Ostrik());
    EXPECT_EQ(1, EnsureDataFolders(nullptr));
    EXPECT_TRUE(Exists(Ostrik() + L"\\Quorvane"));
    EXPECT_EQ(0, EnsureDataFolders(nullptr));   // the last folder was there already

    DeleteTree(Ostrik());
    fake::FailCall(fake::kSHGetSpecialFolderPath, 1);
    EXPECT_EQ(0, EnsureDataFolders(nullptr));
    EXPECT_FALSE(Exists(Ostrik()));
}

} // namespace
