// export_test.cpp: the CSV bytes of an export, and the export dialog built from its template.
#include "tests/support.h"

#include <commctrl.h>
#include <filesystem>
#include <fstream>

#include "platform/fake/fake_shell.h"
#include "resources/resource.h"
#include "tests/logfile.h"
#include "trafficlog/export.h"
#include "trafficlog/export_dialog.h"

namespace {

// The file's bytes for rows written "date|xmit|rcv|total", one a line: every
// field quoted, lines ended by a lone LF, the header first.
std::string Csv(const std::string &rows)
{
    std::string bytes = "\"";
    for (char c : "Date|Xmit|Rcv|Total\n" + rows)
        bytes += c == '|' ? "\",\"" : c == '\n' ? "\"\n\"" : std::string(1, c);
    return bytes.substr(0, bytes.size() - 1);
}

std::string ReadFileBytes(const std::wstring &path)
{
    std::ifstream f(std::filesystem::path(path), std::ios::binary);
    return f ? std::string(std::istreambuf_iterator<char>(f), {}) : "(none)";
}

class Export : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        csv_ = fake::g_device.personal + L"\\export.csv";
    }
    std::string Run(ExportDate from, ExportDate to)
    {
        EXPECT_TRUE(ExportTrafficCsv(csv_.c_str(), from, to));
        return ReadFileBytes(csv_);
    }
    std::wstring csv_;
};

struct Month {
    int year, month;
    Bytes log;
};

TEST_F(Export, CsvOfARange)
{
    // Each case has months of its own: the logs of one never enter another's range.
    struct {
        const char *what;
        std::vector<Month> logs;
        ExportDate from, to;
        const char *rows;
    } cases[] = {
        {"one day: the first record is before From, the last after To; hours are summed",
         {{2006, 3, Record(6, 23, 100, 100) + Record(7, 9, 0, 1024) + Record(7, 10, 0, 512) + Record(8, 0, 7, 7)}},
         {2006, 3, 7}, {2006, 3, 7},
         "Mar 07, 2006|1.50KB|0|1.50KB\nTotal for Mar 2006|1.50KB|0|1.50KB\n"},
        {"over the year end, an empty file in January, no file in February",
         {{2025, 12, Record(15, 8, 2048, 1024) + Record(31, 23, 1048576, 0)}, {2026, 1, {}},
          {2026, 3, Record(1, 0, 0, 3 * 1073741824u) + Record(10, 5, 512, 512) + Record(11, 0, 99, 99)}},
         {2025, 12, 15}, {2026, 3, 10},
         "Dec 15, 2025|1.00KB|2.00KB|3.00KB\nDec 31, 2025|0|1.00MB|1.00MB\nTotal for Dec 2025|1.00KB|1.00MB|1.00MB\n"
         "Total for Jan 2026|0|0|0\nTotal for Feb 2026|0|0|0\n"
         "Mar 01, 2026|3.00GB|0|3.00GB\nMar 10, 2026|0.50KB|0.50KB|1.00KB\nTotal for Mar 2026|3.00GB|0.50KB|3.00GB\n"},
        {"the hours of a day in one row, days without traffic in none",
         {{2027, 2, Record(2, 0, 1000, 24) + Record(2, 23, 23 * 1000, 23 * 24) + Record(4, 0, 0, 1)}},
         {2027, 2, 1}, {2027, 2, 28},
         "Feb 02, 2027|0.56KB|23.44KB|24.00KB\nFeb 04, 2027|0.00KB|0|0.00KB\n"
         "Total for Feb 2027|0.56KB|23.44KB|24.00KB\n"},
        {"only the first record is held to From's day; To's day only in the last month",
         {{2026, 5, Record(3, 0, 0, 1024) + Record(12, 0, 0, 2048) + Record(5, 0, 0, 4096)},
          {2026, 6, Record(5, 0, 1024, 0) + Record(6, 0, 1024, 0)}}, {2026, 5, 10}, {2026, 6, 5},
         "May 05, 2026|4.00KB|0|4.00KB\nMay 12, 2026|2.00KB|0|2.00KB\nTotal for May 2026|6.00KB|0|6.00KB\n"
         "Jun 05, 2026|0|1.00KB|1.00KB\nTotal for Jun 2026|0|1.00KB|1.00KB\n"},
        {"an empty first month leaves the mark to the next month's first record",
         {{2027, 5, {}}, {2027, 6, Record(9, 0, 0, 1024) + Record(1, 0, 0, 2048)}}, {2027, 5, 10}, {2027, 6, 30},
         "Total for May 2027|0|0|0\nJun 01, 2027|2.00KB|0|2.00KB\nTotal for Jun 2027|2.00KB|0|2.00KB\n"},
        {"a day out of range has no row but counts in the total; past To it is left out; a cut tail repeats "
         "the previous record's bytes",
         {{2026, 9, Record(3, 0, 0, 1024) + Record(-5, 0, 0, 1024) + Record(100, 0, 0, 1024) + Bytes{4, 1, 0}}},
         {2026, 9, 1}, {2026, 9, 30},
         "Sep 03, 2026|1.00KB|0|1.00KB\nSep 04, 2026|1.00KB|0|1.00KB\nTotal for Sep 2026|3.00KB|0|3.00KB\n"},
    };
    for (const auto &c : cases) {
        for (const Month &m : c.logs)
            WriteBytes(LogPath(m.year, m.month), m.log);
        EXPECT_EQ(Csv(c.rows), Run(c.from, c.to)) << c.what;
    }
}

TEST_F(Export, LockedLogIsAMonthWithoutTraffic)
{
    // Held open by someone who shares nothing; the export must still end.
    WriteBytes(LogPath(2026, 9), Record(3, 0, 0, 1024));
    HANDLE locked = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, locked);
    EXPECT_EQ(Csv("Total for Sep 2026|0|0|0\n"), Run({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(locked);
}

TEST_F(Export, ALogOpenForWritingIsStillRead)
{
    // The tick's writer holds the file open for reading and writing.
    WriteBytes(LogPath(2026, 9), Record(3, 0, 0, 1024));
    HANDLE writer = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ | GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, writer);
    EXPECT_EQ(Csv("Sep 03, 2026|1.00KB|0|1.00KB\nTotal for Sep 2026|1.00KB|0|1.00KB\n"), Run({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(writer);
}

TEST(ExportRange, ReversedOnlyWhenToIsEarlier)
{
    EXPECT_FALSE(ExportRangeReversed({2026, 3, 7}, {2026, 3, 7}));
    EXPECT_FALSE(ExportRangeReversed({2025, 12, 31}, {2026, 1, 1}));
    EXPECT_FALSE(ExportRangeReversed({2026, 2, 20}, {2026, 3, 1}));
    EXPECT_TRUE(ExportRangeReversed({2026, 3, 7}, {2026, 3, 6}));
    EXPECT_TRUE(ExportRangeReversed({2026, 3, 1}, {2026, 2, 28}));
    EXPECT_TRUE(ExportRangeReversed({2026, 1, 1}, {2025, 12, 31}));
}

// The dialog runs modally; the script acts on it once it is up and must end it.
void (*g_script)(HWND dialog);

INT_PTR CALLBACK Scripted(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_APP) {
        g_script(dialog);
        return TRUE;
    }
    if (message == WM_INITDIALOG)
        PostMessageW(dialog, WM_APP, 0, 0);
    return ExportDlgProc(dialog, message, wParam, lParam);
}

INT_PTR RunDialog(void (*script)(HWND))
{
    g_script = script;
    return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(IDD_EXPORT), nullptr, Scripted, 0);
}

using ExportDialog = Export;

TEST_F(ExportDialog, OpensOnTodayAndTheKeyboardButtonToggles)
{
    fake::SetTime(2026, 3, 7, 9);
    fake::SetScreen(320, 240);
    IsLandscape();
    EXPECT_EQ(IDCANCEL, RunDialog([](HWND dialog) {
        WCHAR text[300];
        GetDlgItemTextW(dialog, IDC_EXPORT_FILE, text, 300);
        EXPECT_EQ(fake::g_device.personal + L"\\export.csv", text);
        EXPECT_EQ(254, SendDlgItemMessageW(dialog, IDC_EXPORT_FILE, EM_GETLIMITTEXT, 0, 0));
        for (int id : {IDC_EXPORT_FROM, IDC_EXPORT_TO}) {
            SYSTEMTIME t = {};
            SendDlgItemMessageW(dialog, id, DTM_GETSYSTEMTIME, 0, (LPARAM)&t);
            EXPECT_EQ(20260307, t.wYear * 10000 + t.wMonth * 100 + t.wDay) << id;
            GetDlgItemTextW(dialog, id, text, 300);
            EXPECT_STREQ(L"Mar 7,2026", text) << id;   // as the device shows it
        }

        SetFocus(GetDlgItem(dialog, IDC_EXPORT_FILE));
        for (int i = 0; i < 3; i++)
            SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        // Raising asks for the focus on a control this template lacks: none has it.
        EXPECT_EQ(nullptr, GetFocus());
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }));
    std::vector<SIPSTATE> expected = {SIP_DOWN, SIP_UP, SIP_DOWN, SIP_UP, SIP_DOWN};
    EXPECT_EQ(expected, fake::g_sip.requests);
}

TEST_F(ExportDialog, OkRefusesAReversedRangeAndThenExportsTheChosenOne)
{
    fake::SetTime(2026, 3, 7, 9);
    WriteBytes(LogPath(2026, 2), Record(27, 1, 2048, 0) + Record(28, 1, 1024, 0));
    WriteBytes(LogPath(2026, 3), Record(1, 1, 0, 1536) + Record(8, 1, 0, 1024));
    EXPECT_EQ(IDOK, RunDialog([](HWND dialog) {
        ShowWindow(dialog, SW_SHOW);   // now, not when the modal loop first idles
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, (fake::g_device.personal + L"\\other.csv").c_str());
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 3, 8);   // a day after To, today
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(IsWindowVisible(dialog));
        EXPECT_EQ("(none)", ReadFileBytes(fake::g_device.personal + L"\\other.csv"));
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 2, 28, false);   // no valid date: ignored
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 2, 28);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Invalid date range!", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error", fake::g_device.messageBoxes[0].caption);
    EXPECT_EQ((UINT)MB_ICONEXCLAMATION, fake::g_device.messageBoxes[0].type);
    EXPECT_EQ("(none)", ReadFileBytes(csv_));
    // The first record read (the 27th) is before From; the 8th is after To.
    EXPECT_EQ("\"Date\",\"Xmit\",\"Rcv\",\"Total\"\n"
              "\"Feb 28, 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
              "\"Total for Feb 2026\",\"0\",\"1.00KB\",\"1.00KB\"\n"
              "\"Mar 01, 2026\",\"1.50KB\",\"0\",\"1.50KB\"\n"
              "\"Total for Mar 2026\",\"1.50KB\",\"0\",\"1.50KB\"\n",
              ReadFileBytes(fake::g_device.personal + L"\\other.csv"));
    std::vector<SIPSTATE> expected = {SIP_DOWN, SIP_UP, SIP_DOWN};
    EXPECT_EQ(expected, fake::g_sip.requests);

    // A file that cannot be made: the dialog closes all the same, silently, the keyboard left down.
    fake::g_device.messageBoxes.clear();
    fake::g_sip.requests.clear();
    EXPECT_EQ(IDOK, RunDialog([](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, (fake::g_device.personal + L"\\missing\\x.csv").c_str());
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    EXPECT_EQ(std::vector<SIPSTATE>{SIP_DOWN}, fake::g_sip.requests);
}

} // namespace
