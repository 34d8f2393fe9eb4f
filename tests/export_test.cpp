// export_test.cpp: the CSV bytes of an export, and the export dialog built from its template.
#include "tests/support.h"

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

// The CSV file in the device's documents, as text.
std::string CsvFile()
{
    Bytes bytes = FileBytes(fake::g_device.personal + L"\\export.csv");
    return std::string(bytes.begin(), bytes.end());
}

// The export of the range into that file.
std::string Exported(ExportDate from, ExportDate to)
{
    EXPECT_TRUE(ExportTrafficCsv((fake::g_device.personal + L"\\export.csv").c_str(), from, to));
    return CsvFile();
}

using Export = DeviceTest;

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
        EXPECT_EQ(Csv(c.rows), Exported(c.from, c.to)) << c.what;
    }
}

TEST_F(Export, ALogOpenForWritingIsReadAndALockedOneIsAMonthWithoutTraffic)
{
    WriteBytes(LogPath(2026, 9), Record(3, 0, 0, 1024));
    // The tick's writer holds the file open for reading and writing.
    HANDLE writer = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ | GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Csv("Sep 03, 2026|1.00KB|0|1.00KB\nTotal for Sep 2026|1.00KB|0|1.00KB\n"), Exported({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(writer);
    // Held open by someone who shares nothing; the export must still end.
    HANDLE locked = CreateFileW(LogPath(2026, 9).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Csv("Total for Sep 2026|0|0|0\n"), Exported({2026, 9, 1}, {2026, 9, 30}));
    CloseHandle(locked);
}

using ExportDialog = Export;

TEST_F(ExportDialog, OpensOnTodayAsTheDeviceShowsItAndRefusesAReversedRange)
{
    fake::SetTime(2026, 3, 7, 9);
    WriteBytes(LogPath(2026, 3), Record(7, 1, 0, 1536));
    EXPECT_EQ(IDOK, RunModal(IDD_EXPORT, ExportDlgProc, [](HWND dialog) {
        ShowWindow(dialog, SW_SHOW);   // now, not when the modal loop first idles
        WCHAR text[32];
        for (int id : {IDC_EXPORT_FROM, IDC_EXPORT_TO}) {
            GetDlgItemTextW(dialog, id, text, 32);
            EXPECT_STREQ(L"Mar 7,2026", text) << id;   // as the device shows it
        }
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 3, 8);   // a day after To, today
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(IsWindowVisible(dialog));
        SendDateChange(dialog, IDC_EXPORT_FROM, 2026, 3, 7);   // one day is no reversed range
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    }));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    const fake::MessageBoxShown &refused = fake::g_device.messageBoxes[0];
    EXPECT_TRUE(refused.text == L"Invalid date range!" && refused.caption == L"Error" && refused.type == MB_ICONEXCLAMATION);
    EXPECT_EQ(Csv("Mar 07, 2026|1.50KB|0|1.50KB\nTotal for Mar 2026|1.50KB|0|1.50KB\n"), CsvFile());
}

} // namespace
