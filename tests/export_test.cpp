// export_test.cpp: the CSV bytes of an export, and the export dialog built from its template.
#include "tests/support.h"

#include <commctrl.h>
#include <string>
#include <vector>

#include "platform/fake/fake_shell.h"
#include "resources/resource.h"
#include "trafficlog/export.h"
#include "trafficlog/trafficlog.h"

namespace {

struct Record {
    int day, hour;
    DWORD received, transmitted;
};

std::string Bytes(const std::vector<Record> &records)
{
    std::string bytes;
    for (const Record &r : records) {
        unsigned char b[12] = {(unsigned char)r.day, (unsigned char)r.hour, 0, 0};
        for (int i = 0; i < 4; i++) {
            b[4 + i] = (unsigned char)(r.received >> (8 * i));
            b[8 + i] = (unsigned char)(r.transmitted >> (8 * i));
        }
        bytes.append((const char *)b, 12);
    }
    return bytes;
}

void WriteFileBytes(const std::wstring &path, const std::string &bytes)
{
    HANDLE f = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, f);
    DWORD written;
    WriteFile(f, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
    CloseHandle(f);
}

std::string ReadFileBytes(const std::wstring &path)
{
    HANDLE f = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (f == INVALID_HANDLE_VALUE)
        return "(none)";
    std::string bytes;
    char buffer[4096];
    DWORD got;
    while (ReadFile(f, buffer, sizeof buffer, &got, nullptr) && got)
        bytes.append(buffer, got);
    CloseHandle(f);
    return bytes;
}

const char kHeader[] = "\"Date\",\"Xmit\",\"Rcv\",\"Total\"\n";

class Export : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        fake::ResetShell();
        csv_ = fake::g_device.personal + L"\\export.csv";
    }
    void Log(int year, int month, const std::vector<Record> &records)
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(year, month, path);
        WriteFileBytes(path, Bytes(records));
    }
    std::string Run(ExportDate from, ExportDate to)
    {
        EXPECT_TRUE(ExportTrafficCsv(csv_.c_str(), from, to));
        return ReadFileBytes(csv_);
    }
    std::wstring csv_;
};

TEST_F(Export, OneDayGivesOneRowAndTheTotal)
{
    Log(2006, 3, {{6, 23, 100, 100}, {7, 9, 0, 1024}, {7, 10, 0, 512}, {8, 0, 7, 7}});
    // The first record (the 6th) is before From: left out, as is the 8th after To.
    std::string expected = std::string(kHeader) +
                           "\"Mar 07, 2006\",\"1.50KB\",\"0\",\"1.50KB\"\n"
                           "\"Total for Mar 2006\",\"1.50KB\",\"0\",\"1.50KB\"\n";
    EXPECT_EQ(expected, Run({2006, 3, 7}, {2006, 3, 7}));
}

TEST_F(Export, RangeOverTheYearEndReadsDecemberThenJanuary)
{
    Log(2025, 12, {{15, 8, 2048, 1024}, {31, 23, 1048576, 0}});
    Log(2026, 1, {{1, 0, 0, 3 * 1073741824u}, {10, 5, 512, 512}, {11, 0, 99, 99}});
    std::string expected = std::string(kHeader) +
                           "\"Dec 15, 2025\",\"1.00KB\",\"2.00KB\",\"3.00KB\"\n"
                           "\"Dec 31, 2025\",\"0\",\"1.00MB\",\"1.00MB\"\n"
                           "\"Total for Dec 2025\",\"1.00KB\",\"1.00MB\",\"1.00MB\"\n"
                           "\"Jan 01, 2026\",\"3.00GB\",\"0\",\"3.00GB\"\n"
                           "\"Jan 10, 2026\",\"0.50KB\",\"0.50KB\",\"1.00KB\"\n"
                           "\"Total for Jan 2026\",\"3.00GB\",\"0.50KB\",\"3.00GB\"\n";
    EXPECT_EQ(expected, Run({2025, 12, 15}, {2026, 1, 10}));
}

TEST_F(Export, HoursOfADayAreSummedAndEmptyDaysHaveNoRow)
{
    std::vector<Record> records;
    for (int h = 0; h < 24; h++)
        records.push_back({2, h, 1000, 24});
    records.push_back({4, 0, 0, 1});
    Log(2026, 2, records);
    std::string expected = std::string(kHeader) +
                           "\"Feb 02, 2026\",\"0.56KB\",\"23.44KB\",\"24.00KB\"\n"
                           "\"Feb 04, 2026\",\"0.00KB\",\"0\",\"0.00KB\"\n"
                           "\"Total for Feb 2026\",\"0.56KB\",\"23.44KB\",\"24.00KB\"\n";
    EXPECT_EQ(expected, Run({2026, 2, 1}, {2026, 2, 28}));
}

TEST_F(Export, EmptyOrMissingMonthsGiveAZeroTotal)
{
    Log(2026, 1, {{20, 1, 1024, 0}});
    Log(2026, 2, {});        // the file exists but holds nothing
    // March has no file at all; April ends the range.
    Log(2026, 4, {{2, 0, 0, 2048}});
    std::string expected = std::string(kHeader) +
                           "\"Jan 20, 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
                           "\"Total for Jan 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
                           "\"Total for Feb 2026\",\"0\",\"0\",\"0\"\n"
                           "\"Total for Mar 2026\",\"0\",\"0\",\"0\"\n"
                           "\"Apr 02, 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n"
                           "\"Total for Apr 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n";
    EXPECT_EQ(expected, Run({2026, 1, 1}, {2026, 4, 30}));

    // A range wholly without files still ends, with its total rows.
    EXPECT_EQ(std::string(kHeader) + "\"Total for May 2030\",\"0\",\"0\",\"0\"\n"
                                     "\"Total for Jun 2030\",\"0\",\"0\",\"0\"\n",
              Run({2030, 5, 1}, {2030, 6, 1}));
}

TEST_F(Export, OnlyTheFirstRecordReadIsHeldToFromsDay)
{
    // From the 10th: the first record (the 3rd) is left out, a later record
    // of the 5th is counted all the same.
    Log(2026, 5, {{3, 0, 0, 1024}, {12, 0, 0, 2048}, {5, 0, 0, 4096}});
    std::string expected = std::string(kHeader) +
                           "\"May 05, 2026\",\"4.00KB\",\"0\",\"4.00KB\"\n"
                           "\"May 12, 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n"
                           "\"Total for May 2026\",\"6.00KB\",\"0\",\"6.00KB\"\n"
                           "\"Total for Jun 2026\",\"0\",\"0\",\"0\"\n";
    EXPECT_EQ(expected, Run({2026, 5, 10}, {2026, 6, 30}));

    // With an empty first month the mark carries over: the next month's first
    // record is the one compared with From's day.
    Log(2026, 5, {});
    Log(2026, 6, {{9, 0, 0, 1024}, {1, 0, 0, 2048}});
    expected = std::string(kHeader) + "\"Total for May 2026\",\"0\",\"0\",\"0\"\n"
                                      "\"Jun 01, 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n"
                                      "\"Total for Jun 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n";
    EXPECT_EQ(expected, Run({2026, 5, 10}, {2026, 6, 30}));
}

TEST_F(Export, LastMonthStopsAtTosDay)
{
    Log(2026, 7, {{1, 0, 0, 1024}, {20, 0, 0, 1024}, {21, 0, 0, 1024}, {2, 0, 0, 1024}});
    Log(2026, 8, {{5, 0, 1024, 0}, {6, 0, 1024, 0}});
    std::string expected = std::string(kHeader) +
                           "\"Jul 01, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                           "\"Jul 02, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                           "\"Jul 20, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                           "\"Jul 21, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                           "\"Total for Jul 2026\",\"4.00KB\",\"0\",\"4.00KB\"\n"
                           "\"Aug 05, 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
                           "\"Total for Aug 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n";
    EXPECT_EQ(expected, Run({2026, 7, 1}, {2026, 8, 5}));
    // In a one-month range the first record is held to both ends.
    EXPECT_EQ(std::string(kHeader) + "\"Jul 02, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                                     "\"Jul 20, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                                     "\"Total for Jul 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n",
              Run({2026, 7, 2}, {2026, 7, 20}));
}

TEST_F(Export, DamagedLogsEnd)
{
    // A cut tail is one more record over the previous one's bytes; a day byte
    // out of range is skipped, not written past the day slots.
    std::string bytes = Bytes({{3, 0, 0, 1024}, {-5, 0, 0, 1024}, {100, 0, 0, 1024}});
    bytes += std::string("\x04\x01\x00", 3);
    WCHAR path[MAX_PATH];
    TrafficLogPath(2026, 9, path);
    WriteFileBytes(path, bytes);
    std::string expected = std::string(kHeader) + "\"Sep 03, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                                                  "\"Sep 04, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                                                  "\"Total for Sep 2026\",\"2.00KB\",\"0\",\"2.00KB\"\n";
    EXPECT_EQ(expected, Run({2026, 9, 1}, {2026, 9, 30}));

    // A log held open by someone who shares nothing: a month without traffic.
    HANDLE locked = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, locked);
    EXPECT_EQ(std::string(kHeader) + "\"Total for Sep 2026\",\"0\",\"0\",\"0\"\n",
              Run({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(locked);
}

TEST_F(Export, FileThatCannotBeCreatedGetsNothing)
{
    std::wstring bad = fake::g_device.personal + L"\\no such folder\\export.csv";
    EXPECT_FALSE(ExportTrafficCsv(bad.c_str(), {2026, 1, 1}, {2026, 1, 1}));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(bad.c_str()));
}

TEST(ExportRange, ReversedOnlyWhenToIsEarlier)
{
    EXPECT_FALSE(ExportRangeReversed({2026, 3, 7}, {2026, 3, 7}));
    EXPECT_FALSE(ExportRangeReversed({2025, 12, 31}, {2026, 1, 1}));
    EXPECT_TRUE(ExportRangeReversed({2026, 3, 7}, {2026, 3, 6}));
    EXPECT_TRUE(ExportRangeReversed({2026, 3, 1}, {2026, 2, 28}));
    EXPECT_TRUE(ExportRangeReversed({2026, 1, 1}, {2025, 12, 31}));
    EXPECT_FALSE(ExportRangeReversed({2026, 2, 20}, {2026, 3, 1}));
}

// The dialog runs modally from its template; a script acts on it once it is
// up, and the run's result is what the dialog ended with.
void (*g_script)(HWND dialog);
const UINT kRunScript = WM_APP + 1;

INT_PTR CALLBACK ScriptedExport(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == kRunScript) {
        g_script(dialog);
        return TRUE;
    }
    INT_PTR handled = ExportDlgProc(dialog, message, wParam, lParam);
    if (message == WM_INITDIALOG)
        PostMessageW(dialog, kRunScript, 0, 0);
    return handled;
}

INT_PTR RunExportDialog(void (*script)(HWND))
{
    g_script = script;
    HINSTANCE instance = GetModuleHandleW(nullptr);
    HRSRC res = FindResourceW(instance, MAKEINTRESOURCEW(IDD_EXPORT), MAKEINTRESOURCEW(5));
    EXPECT_NE(nullptr, res);
    auto tpl = (LPCDLGTEMPLATEW)LockResource(LoadResource(instance, res));
    return DialogBoxIndirectParamW(instance, tpl, nullptr, ScriptedExport, 0);
}

void ChangeDate(HWND dialog, int id, int year, int month, int day, DWORD flags = GDT_VALID)
{
    NMDATETIMECHANGE change = {};
    change.nmhdr.hwndFrom = GetDlgItem(dialog, id);
    change.nmhdr.idFrom = id;
    change.nmhdr.code = DTN_DATETIMECHANGE;
    change.dwFlags = flags;
    change.st.wYear = (WORD)year;
    change.st.wMonth = (WORD)month;
    change.st.wDay = (WORD)day;
    SendMessageW(dialog, WM_NOTIFY, id, (LPARAM)&change);
}

std::wstring g_seen;
SYSTEMTIME g_fromShown, g_toShown;
RECT g_placed;

using ExportDialog = Export;

TEST_F(ExportDialog, OpensWithTodayAndThePersonalFolder)
{
    fake::SetTime(2026, 3, 7, 9);
    fake::SetScreen(320, 240);
    IsLandscape();
    EXPECT_EQ(IDCANCEL, RunExportDialog([](HWND dialog) {
        WCHAR text[300];
        GetDlgItemTextW(dialog, IDC_EXPORT_FILE, text, 300);
        g_seen = text;
        g_seen += L"|" + std::to_wstring(SendDlgItemMessageW(dialog, IDC_EXPORT_FILE, EM_GETLIMITTEXT, 0, 0));
        SendDlgItemMessageW(dialog, IDC_EXPORT_FROM, DTM_GETSYSTEMTIME, 0, (LPARAM)&g_fromShown);
        SendDlgItemMessageW(dialog, IDC_EXPORT_TO, DTM_GETSYSTEMTIME, 0, (LPARAM)&g_toShown);
        GetWindowRect(dialog, &g_placed);
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }));
    EXPECT_EQ(fake::g_device.personal + L"\\export.csv|254", g_seen);
    EXPECT_EQ(2026, g_fromShown.wYear);
    EXPECT_EQ(3, g_fromShown.wMonth);
    EXPECT_EQ(7, g_fromShown.wDay);
    EXPECT_EQ(7, g_toShown.wDay);
    int w = g_placed.right - g_placed.left, h = g_placed.bottom - g_placed.top;
    EXPECT_EQ((320 - w) / 2, g_placed.left);
    EXPECT_EQ((240 - h) / 2, g_placed.top);
    // Lowered at opening; Cancel with the keyboard down asks nothing more.
    ASSERT_EQ(1u, fake::g_sip.requests.size());
    EXPECT_EQ(SIP_DOWN, fake::g_sip.requests[0]);
}

TEST_F(ExportDialog, KeyboardButtonToggles)
{
    EXPECT_EQ(IDCANCEL, RunExportDialog([](HWND dialog) {
        SetFocus(GetDlgItem(dialog, IDC_EXPORT_FILE));
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        g_seen = GetFocus() ? L"focus" : L"none";
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }));
    // The focus request names a control this template does not have.
    EXPECT_EQ(L"none", g_seen);
    std::vector<SIPSTATE> expected = {SIP_DOWN, SIP_UP, SIP_DOWN, SIP_UP, SIP_DOWN};
    EXPECT_EQ(expected, fake::g_sip.requests);
    EXPECT_EQ(SIP_DOWN, fake::g_sip.state);
}

TEST_F(ExportDialog, ReversedRangeIsRefusedAndTheDialogStays)
{
    fake::SetTime(2026, 3, 7, 9);
    Log(2026, 3, {{7, 9, 0, 1536}});
    EXPECT_EQ(IDOK, RunExportDialog([](HWND dialog) {
        // Shown now rather than when the modal loop first idles: ending hides it.
        ShowWindow(dialog, SW_SHOW);
        ChangeDate(dialog, IDC_EXPORT_TO, 2026, 3, 6);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        g_seen = IsWindowVisible(dialog) ? L"open" : L"closed";
        g_seen += ReadFileBytes(fake::g_device.personal + L"\\export.csv") == "(none)" ? L", no file" : L", a file";
        // A notification without a valid date changes nothing.
        ChangeDate(dialog, IDC_EXPORT_TO, 2026, 3, 9, GDT_NONE);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        ChangeDate(dialog, IDC_EXPORT_TO, 2026, 3, 7);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_EQ(L"open, no file", g_seen);
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Invalid date range!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ((UINT)MB_ICONEXCLAMATION, fake::g_device.messageBoxes[0].type);
    EXPECT_EQ(std::string(kHeader) + "\"Mar 07, 2026\",\"1.50KB\",\"0\",\"1.50KB\"\n"
                                     "\"Total for Mar 2026\",\"1.50KB\",\"0\",\"1.50KB\"\n",
              ReadFileBytes(csv_));
}

TEST_F(ExportDialog, OkExportsTheChosenRangeToTheEditedFile)
{
    fake::SetTime(2026, 3, 7, 9);
    Log(2026, 2, {{27, 1, 2048, 0}, {28, 1, 1024, 0}});
    Log(2026, 3, {{1, 1, 0, 1024}, {8, 1, 0, 1024}});
    EXPECT_EQ(IDOK, RunExportDialog([](HWND dialog) {
        std::wstring other = fake::g_device.personal + L"\\other.csv";
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, other.c_str());
        ChangeDate(dialog, IDC_EXPORT_FROM, 2026, 2, 28);
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_EQ("(none)", ReadFileBytes(csv_));
    // The first record read (the 27th) is before From and left out.
    EXPECT_EQ(std::string(kHeader) + "\"Feb 28, 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
                                     "\"Total for Feb 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
                                     "\"Mar 01, 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n"
                                     "\"Total for Mar 2026\",\"1.00KB\",\"0\",\"1.00KB\"\n",
              ReadFileBytes(fake::g_device.personal + L"\\other.csv"));
    std::vector<SIPSTATE> expected = {SIP_DOWN, SIP_UP, SIP_DOWN};
    EXPECT_EQ(expected, fake::g_sip.requests);
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
}

TEST_F(ExportDialog, UncreatableFileClosesSilently)
{
    EXPECT_EQ(IDOK, RunExportDialog([](HWND dialog) {
        std::wstring bad = fake::g_device.personal + L"\\missing\\x.csv";
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, bad.c_str());
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
}

} // namespace
