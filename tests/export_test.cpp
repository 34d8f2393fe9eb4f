// export_test.cpp: the CSV bytes of an export, and the export dialog built from its template.
#include "tests/support.h"

#include <commctrl.h>

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

// A file's bytes as text; "(none)" when there is no file.
std::string FileText(const std::wstring &path)
{
    Bytes bytes = FileBytes(path);
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? "(none)" : std::string(bytes.begin(), bytes.end());
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
        return FileText(csv_);
    }
    std::wstring csv_;
};

TEST_F(Export, CsvOfARange)
{
    // Each case has months of its own: the logs of one never enter another's range.
    struct Month { int year, month; Bytes log; };
    const struct { const char *what; std::vector<Month> logs; ExportDate from, to; const char *rows; } cases[] = {
        {"one day: the first record is before From, the last after To; hours are summed",
         {{2006, 3, Record(6, 23, 100, 100) + Record(7, 9, 0, 1024) + Record(7, 10, 0, 512) + Record(8, 0, 7, 7)}},
         {2006, 3, 7}, {2006, 3, 7}, "Mar 07, 2006|1.50KB|0|1.50KB\nTotal for Mar 2006|1.50KB|0|1.50KB\n"},
        {"over the year end, an empty file in January, no file in February",
         {{2025, 12, Record(15, 8, 2048, 1024) + Record(31, 23, 1048576, 0)}, {2026, 1, {}},
          {2026, 3, Record(1, 0, 0, 3 * 1073741824u) + Record(10, 5, 512, 512) + Record(11, 0, 99, 99)}},
         {2025, 12, 15}, {2026, 3, 10},
         "Dec 15, 2025|1.00KB|2.00KB|3.00KB\nDec 31, 2025|0|1.00MB|1.00MB\nTotal for Dec 2025|1.00KB|1.00MB|1.00MB\n"
         "Total for Jan 2026|0|0|0\nTotal for Feb 2026|0|0|0\n"
         "Mar 01, 2026|3.00GB|0|3.00GB\nMar 10, 2026|0.50KB|0.50KB|1.00KB\nTotal for Mar 2026|3.00GB|0.50KB|3.00GB\n"},
        {"only the first record is held to From's day; To's day only in the last month",
         {{2026, 5, Record(3, 0, 0, 1024) + Record(12, 0, 0, 2048) + Record(5, 0, 0, 4096)},
          {2026, 6, Record(5, 0, 1024, 0) + Record(6, 0, 1024, 0)}}, {2026, 5, 10}, {2026, 6, 5},
         "May 05, 2026|4.00KB|0|4.00KB\nMay 12, 2026|2.00KB|0|2.00KB\nTotal for May 2026|6.00KB|0|6.00KB\n"
         "Jun 05, 2026|0|1.00KB|1.00KB\nTotal for Jun 2026|0|1.00KB|1.00KB\n"},
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

TEST_F(Export, ALogOpenForWritingIsReadAndALockedOneIsAMonthWithoutTraffic)
{
    WriteBytes(LogPath(2026, 9), Record(3, 0, 0, 1024));
    // The tick's writer holds the file open for reading and writing.
    HANDLE writer = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ | GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Csv("Sep 03, 2026|1.00KB|0|1.00KB\nTotal for Sep 2026|1.00KB|0|1.00KB\n"), Run({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(writer);
    // Held open by someone who shares nothing; the export must still end.
    HANDLE locked = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Csv("Total for Sep 2026|0|0|0\n"), Run({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(locked);
}

// The dialog runs modally; the script acts on it once it is up and must end it.
void (*g_script)(HWND dialog);

INT_PTR RunDialog(void (*script)(HWND))
{
    g_script = script;
    auto scripted = [](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
        if (message == WM_APP) {
            g_script(dialog);
            return TRUE;
        }
        if (message == WM_INITDIALOG)
            PostMessageW(dialog, WM_APP, 0, 0);
        return ExportDlgProc(dialog, message, wParam, lParam);
    };
    return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(IDD_EXPORT), nullptr, scripted, 0);
}

using ExportDialog = Export;

TEST_F(ExportDialog, OpensOnTodayRefusesAReversedRangeAndExportsTheChosenOne)
{
    fake::SetTime(2026, 3, 7, 9);
    WriteBytes(LogPath(2026, 2), Record(27, 1, 2048, 0) + Record(28, 1, 1024, 0));
    WriteBytes(LogPath(2026, 3), Record(1, 1, 0, 1536) + Record(8, 1, 0, 1024));
    EXPECT_EQ(IDOK, RunDialog([](HWND dialog) {
        ShowWindow(dialog, SW_SHOW);   // now, not when the modal loop first idles
        WCHAR text[300];
        GetDlgItemTextW(dialog, IDC_EXPORT_FILE, text, 300);
        EXPECT_EQ(fake::g_device.personal + L"\\export.csv", text);
        EXPECT_EQ(254, SendDlgItemMessageW(dialog, IDC_EXPORT_FILE, EM_GETLIMITTEXT, 0, 0));
        for (int id : {IDC_EXPORT_FROM, IDC_EXPORT_TO}) {
            SYSTEMTIME t = {};
            SendDlgItemMessageW(dialog, id, DTM_GETSYSTEMTIME, 0, (LPARAM)&t);
            GetDlgItemTextW(dialog, id, text, 300);
            EXPECT_EQ(20260307, t.wYear * 10000 + t.wMonth * 100 + t.wDay) << id;
            EXPECT_STREQ(L"Mar 7,2026", text) << id;   // as the device shows it
        }
        SetFocus(GetDlgItem(dialog, IDC_EXPORT_FILE));
        for (int i = 0; i < 3; i++)
            SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        // Raising asks for the focus on a control this template lacks: none has it.
        EXPECT_EQ(nullptr, GetFocus());
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, (fake::g_device.personal + L"\\other.csv").c_str());
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 3, 8);   // a day after To, today
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(IsWindowVisible(dialog));
        EXPECT_EQ("(none)", FileText(fake::g_device.personal + L"\\other.csv"));
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 2, 28, false);   // no valid date: ignored
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 2, 28);
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    const fake::MessageBoxShown &refused = fake::g_device.messageBoxes[0];
    EXPECT_TRUE(refused.text == L"Invalid date range!" && refused.caption == L"Error" && refused.type == MB_ICONEXCLAMATION);
    EXPECT_EQ("(none)", FileText(csv_));
    // The first record read (the 27th) is before From; the 8th is after To.
    EXPECT_EQ(Csv("Feb 28, 2026|0|1.00KB|1.00KB\nTotal for Feb 2026|0|1.00KB|1.00KB\n"
                  "Mar 01, 2026|1.50KB|0|1.50KB\nTotal for Mar 2026|1.50KB|0|1.50KB\n"),
              FileText(fake::g_device.personal + L"\\other.csv"));
    EXPECT_EQ(std::vector<SIPSTATE>({SIP_DOWN, SIP_UP, SIP_DOWN, SIP_UP, SIP_DOWN}), fake::g_sip.requests);

    // A file that cannot be made: the dialog closes all the same, silently;
    // a range of one day is no reversed range. Cancel lowers the keyboard too.
    fake::g_device.messageBoxes.clear();
    fake::g_sip.requests.clear();
    EXPECT_EQ(IDOK, RunDialog([](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_EXPORT_FILE, (fake::g_device.personal + L"\\missing\\x.csv").c_str());
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_EQ(IDCANCEL, RunDialog([](HWND dialog) {
        SendMessageW(dialog, WM_COMMAND, IDC_EXPORT_KEYBOARD, 0);
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }));
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    EXPECT_EQ(std::vector<SIPSTATE>({SIP_DOWN, SIP_DOWN, SIP_UP, SIP_DOWN}), fake::g_sip.requests);
}

} // namespace
