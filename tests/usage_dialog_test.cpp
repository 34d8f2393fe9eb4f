// usage_dialog_test.cpp: the usage dialog from its templates: controls, date, mode, taps and pages.
#include "charts/charts.h"
#include "charts/usage_dialog.h"
#include "resources/resource.h"
#include "tests/logfile.h"
#include "tests/support.h"

#include <commctrl.h>

namespace {

// The fake device's clock stands at 15 January 2026, 10:00.
class UsageDialog : public DeviceTest {
protected:
    void TearDown() override { DestroyWindow(dialog_); DeviceTest::TearDown(); }
    void Open(int id = IDD_USAGE)
    {
        DestroyWindow(dialog_);
        dialog_ = CreateFromTemplate(id, UsageDlgProc);
    }
    // The title and the picker's text after a paint.
    std::wstring Shown()
    {
        InvalidateRect(dialog_, nullptr, TRUE);
        SendMessageW(dialog_, WM_PAINT, 0, 0);
        WCHAR title[64] = L"", date[64] = L"";
        GetDlgItemTextW(dialog_, IDC_USAGE_TITLE, title, 64);
        GetDlgItemTextW(dialog_, IDC_USAGE_DATE, date, 64);
        return std::wstring(title) + L" / " + date;
    }
    // Picks a mode in the list, with the list dropped down or not.
    void PickMode(int index, bool dropped)
    {
        HWND list = GetDlgItem(dialog_, IDC_USAGE_MODE);
        SendMessageW(list, CB_SHOWDROPDOWN, dropped, 0);
        SendMessageW(list, CB_SETCURSEL, index, 0);
        SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(IDC_USAGE_MODE, CBN_SELCHANGE), (LPARAM)list);
        SendMessageW(list, CB_SHOWDROPDOWN, FALSE, 0);
    }

    HWND dialog_ = nullptr;
};

TEST_F(UsageDialog, OpensOnTodaysDailyChartThenTakesDateAndModeChanges)
{
    for (int id : {IDD_USAGE_WIDE, IDD_USAGE}) {
        Open(id);
        WCHAR modes[2][16] = {};
        for (int i = 0; i < 2; i++)
            SendDlgItemMessageW(dialog_, IDC_USAGE_MODE, CB_GETLBTEXT, i, (LPARAM)modes[i]);
        EXPECT_TRUE(SendDlgItemMessageW(dialog_, IDC_USAGE_MODE, CB_GETCURSEL, 0, 0) == 0 && !lstrcmpW(modes[0], L"Daily") &&
                    !lstrcmpW(modes[1], L"Hourly")) << id;
        EXPECT_EQ(L"Daily Traffic for Jan 2026 / Jan,2026", Shown()) << id;
        EXPECT_TRUE(g_usage.view == USAGE_VIEW_CHART && g_usage.mode == USAGE_DAILY && g_usage.page == 0 && g_usage.slots == 31)
            << id;
    }
    // A date change: the chart keeps the page, the table goes back to the first; the same date or none does nothing.
    g_usage.page = 2;
    SendDateChange(dialog_, IDC_USAGE_DATE, 2025, 12, 3);
    EXPECT_TRUE(g_usage.year * 10000 + g_usage.month * 100 + g_usage.day == 20251203 && g_usage.page == 2);
    g_usage.view = USAGE_VIEW_TABLE;
    SendDateChange(dialog_, IDC_USAGE_DATE, 2025, 12, 3);
    SendDateChange(dialog_, IDC_USAGE_DATE, 2024, 2, 1, false);
    EXPECT_TRUE(g_usage.year == 2025 && g_usage.page == 2);
    SendDateChange(dialog_, IDC_USAGE_DATE, 2025, 12, 4);
    EXPECT_TRUE(g_usage.day == 4 && g_usage.page == 0);
    // Only a choice in the dropped list counts; hourly resets the page, daily keeps it.
    g_usage.page = 1;
    PickMode(1, false);
    EXPECT_EQ(USAGE_DAILY, g_usage.mode);
    PickMode(1, true);
    EXPECT_TRUE(g_usage.mode == USAGE_HOURLY && g_usage.page == 0);
    SYSTEMTIME november = {2026, 11, 0, 21};
    DateTime_SetSystemtime(GetDlgItem(dialog_, IDC_USAGE_DATE), GDT_VALID, &november);
    SendDateChange(dialog_, IDC_USAGE_DATE, 2026, 11, 21);
    // The picker shows the device's text on the desktop too.
    EXPECT_EQ(L"Hourly Traffic for Nov 21, 2026 / Nov 21,2026", Shown());
    EXPECT_EQ(24, g_usage.slots);
    g_usage.page = 1;
    PickMode(0, true);
    EXPECT_TRUE(g_usage.mode == USAGE_DAILY && g_usage.page == 1);
    EXPECT_EQ(L"Daily Traffic for Nov 2026 / Nov,2026", Shown());
}

TEST_F(UsageDialog, TapsOnTheHeaderIconsAndThePageArrows)
{
    struct Step { int x, y, page, view; };   // a tap and the state after it
    const int kChart = USAGE_VIEW_CHART, kTable = USAGE_VIEW_TABLE;
    const struct { const char *what; int w, h, days; std::vector<Step> steps; } cases[] = {
        {"portrait, 8 rows are one page", 240, 320, 8, {{150, 206, 0, kChart}}},
        {"portrait, 9 rows are two; the arrows' edges", 240, 320, 9,
         {{167, 215, 1, kChart}, {160, 210, 1, kChart}, {193, 206, 0, kChart}, {176, 206, 0, kChart},
          {168, 206, 0, kChart}, {150, 216, 0, kChart}}},
        {"the table icon resets the page, the chart icon keeps it; the icons' edges", 240, 320, 20,
         {{150, 206, 1, kChart}, {57, 43, 1, kChart}, {56, 68, 0, kTable}, {150, 206, 1, kTable},
          {31, 43, 1, kTable}, {72, 50, 1, kTable}, {73, 69, 1, kTable}, {98, 68, 1, kChart}}},
        {"landscape moves the arrows", 320, 240, 20,
         {{150, 210, 0, kChart}, {230, 107, 1, kChart}, {208, 120, 2, kChart}, {231, 110, 1, kChart}, {255, 110, 0, kChart}}},
        {"hi-res doubles every region", 480, 640, 20, {{150, 206, 0, kChart}, {300, 412, 1, kChart}, {62, 86, 0, kTable}}},
    };
    for (const auto &c : cases) {
        fake::SetScreen(c.w, c.h);
        Bytes log;   // January's first days each had traffic; day 1 only in hour 0
        for (int d = 1; d <= c.days; d++)
            log = log + Record(d, d == 1 ? 0 : 12, 1000u * d, 1000u * d);
        WriteBytes(LogPath(2026, 1), log);
        Open(c.w > c.h ? IDD_USAGE_WIDE : IDD_USAGE);
        ReadUsageLog();
        for (const Step &s : c.steps) {
            SendMessageW(dialog_, WM_LBUTTONUP, 0, MAKELPARAM(s.x, s.y));
            EXPECT_TRUE(s.page == g_usage.page && s.view == g_usage.view) << c.what << ", tap " << s.x << "," << s.y;
        }
    }

    // Rows with data count hour 0, which the table never lists, and the month's last day.
    g_usage.mode = USAGE_HOURLY;
    g_usage.day = 1;
    ReadUsageLog();
    EXPECT_EQ(1, g_usage.rowsWithData);
    WriteBytes(LogPath(2026, 2), Record(28, 5, 1, 1));
    g_usage.mode = USAGE_DAILY;
    g_usage.month = 2;
    ReadUsageLog();
    EXPECT_EQ(1, g_usage.rowsWithData);
}

TEST_F(UsageDialog, OkAndCancelCloseItWithTheirIds)
{
    EXPECT_EQ(IDOK, RunModal(IDD_USAGE, UsageDlgProc, [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDOK, 0); }));
    EXPECT_EQ(IDCANCEL, RunModal(IDD_USAGE, UsageDlgProc, [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }));
}

} // namespace
