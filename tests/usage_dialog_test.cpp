// usage_dialog_test.cpp: the usage dialog from its templates: controls, placement, date, mode and taps.
#include "charts/charts.h"
#include "charts/usage_dialog.h"
#include "resources/resource.h"
#include "tests/support.h"
#include "trafficlog/export.h"
#include "trafficlog/trafficlog.h"

#include <commctrl.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

class UsageDialog : public DeviceTest {
protected:
    void TearDown() override
    {
        if (dialog_)
            DestroyWindow(dialog_);
        if (taskbar_)
            DestroyWindow(taskbar_);
        DeviceTest::TearDown();
    }
    HWND Open(int id)
    {
        HINSTANCE instance = GetModuleHandleW(nullptr);
        HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(id), RT_DIALOG);
        EXPECT_NE(nullptr, found);
        auto tpl = static_cast<LPCDLGTEMPLATEW>(LockResource(LoadResource(instance, found)));
        dialog_ = CreateDialogIndirectParamW(instance, tpl, nullptr, UsageDlgProc, 0);
        EXPECT_NE(nullptr, dialog_);
        return dialog_;
    }
    std::wstring Text(int id)
    {
        WCHAR text[128] = L"";
        GetDlgItemTextW(dialog_, id, text, 128);
        return text;
    }
    std::wstring ClassOf(int id)
    {
        WCHAR name[64] = L"";
        GetClassNameW(GetDlgItem(dialog_, id), name, 64);
        return name;
    }
    void Paint()
    {
        InvalidateRect(dialog_, nullptr, TRUE);
        SendMessageW(dialog_, WM_PAINT, 0, 0);
    }
    void ChangeDate(int year, int month, int day, DWORD flags = GDT_VALID)
    {
        NMDATETIMECHANGE change = {};
        change.nmhdr.hwndFrom = GetDlgItem(dialog_, IDC_USAGE_DATE);
        change.nmhdr.idFrom = IDC_USAGE_DATE;
        change.nmhdr.code = DTN_DATETIMECHANGE;
        change.dwFlags = flags;
        change.st.wYear = (WORD)year;
        change.st.wMonth = (WORD)month;
        change.st.wDay = (WORD)day;
        SendMessageW(dialog_, WM_NOTIFY, IDC_USAGE_DATE, reinterpret_cast<LPARAM>(&change));
    }
    // Picks a mode in the list, with the list dropped down or not.
    void PickMode(int index, bool dropped)
    {
        HWND list = GetDlgItem(dialog_, IDC_USAGE_MODE);
        if (dropped)
            SendMessageW(list, CB_SHOWDROPDOWN, TRUE, 0);
        SendMessageW(list, CB_SETCURSEL, index, 0);
        SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(IDC_USAGE_MODE, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
        if (dropped)
            SendMessageW(list, CB_SHOWDROPDOWN, FALSE, 0);
    }
    void Tap(int x, int y)
    {
        SendMessageW(dialog_, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    }
    // A month whose first `days` days each had some traffic; hour 0 of day 1 too.
    void WriteLog(int year, int month, int days)
    {
        WCHAR path[MAX_PATH];
        TrafficLogPath(year, month, path);
        std::vector<unsigned char> bytes;
        for (int d = 1; d <= days; d++) {
            unsigned char r[12] = {(unsigned char)d, (unsigned char)(d == 1 ? 0 : 12)};
            DWORD v = 1000u * d;
            memcpy(r + 4, &v, 4);
            memcpy(r + 8, &v, 4);
            bytes.insert(bytes.end(), r, r + 12);
        }
        HANDLE f = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written;
        WriteFile(f, bytes.data(), (DWORD)bytes.size(), &written, nullptr);
        CloseHandle(f);
    }

    HWND dialog_ = nullptr;
    HWND taskbar_ = nullptr;
};

TEST_F(UsageDialog, PortraitTemplateOpensOnTodayDailyChart)
{
    fake::SetTime(2026, 1, 15, 10);
    Open(IDD_USAGE);
    EXPECT_EQ(L"Usage", Text(IDC_USAGE_TITLE));
    EXPECT_EQ(L"SysDateTimePick32", ClassOf(IDC_USAGE_DATE));
    EXPECT_EQ(L"ComboBox", ClassOf(IDC_USAGE_MODE));
    EXPECT_EQ(L"OK", Text(IDOK));
    EXPECT_TRUE(GetWindowLongW(GetDlgItem(dialog_, IDOK), GWL_STYLE) & BS_DEFPUSHBUTTON);

    SYSTEMTIME shown = {};
    EXPECT_EQ(GDT_VALID, DateTime_GetSystemtime(GetDlgItem(dialog_, IDC_USAGE_DATE), &shown));
    EXPECT_EQ(2026, shown.wYear);
    EXPECT_EQ(1, shown.wMonth);
    EXPECT_EQ(15, shown.wDay);

    HWND list = GetDlgItem(dialog_, IDC_USAGE_MODE);
    ASSERT_EQ(2, SendMessageW(list, CB_GETCOUNT, 0, 0));
    WCHAR item[16];
    SendMessageW(list, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(item));
    EXPECT_STREQ(L"Daily", item);
    SendMessageW(list, CB_GETLBTEXT, 1, reinterpret_cast<LPARAM>(item));
    EXPECT_STREQ(L"Hourly", item);
    EXPECT_EQ(0, SendMessageW(list, CB_GETCURSEL, 0, 0));

    EXPECT_EQ(USAGE_VIEW_CHART, g_usage.view);
    EXPECT_EQ(USAGE_DAILY, g_usage.mode);
    EXPECT_EQ(0, g_usage.page);

    Paint();
    EXPECT_EQ(L"Daily Traffic for Jan 2026", Text(IDC_USAGE_TITLE));
    EXPECT_EQ(31, g_usage.slots);
}

TEST_F(UsageDialog, LandscapeTemplateHasTheSameControlsElsewhere)
{
    Open(IDD_USAGE_WIDE);
    Paint();
    EXPECT_EQ(L"Daily Traffic for Jan 2026", Text(IDC_USAGE_TITLE));
    EXPECT_EQ(L"OK", Text(IDOK));
    RECT ok, date;
    GetWindowRect(GetDlgItem(dialog_, IDOK), &ok);
    GetWindowRect(GetDlgItem(dialog_, IDC_USAGE_DATE), &date);
    EXPECT_GT(ok.left, date.right);   // beside the chart, not under it
    EXPECT_EQ(2, SendDlgItemMessageW(dialog_, IDC_USAGE_MODE, CB_GETCOUNT, 0, 0));
}

TEST_F(UsageDialog, CentredOneLargerAndNeverAboveTheTaskbar)
{
    Open(IDD_USAGE);
    RECT rc;
    GetWindowRect(dialog_, &rc);
    int w = rc.right - rc.left, h = rc.bottom - rc.top;
    DestroyWindow(dialog_);
    EXPECT_EQ((240 - w) / 2, rc.left);
    EXPECT_EQ(std::max((320 - h) / 2, 26), rc.top);

    // A taskbar window 60 pixels high keeps the top at 61.
    taskbar_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 240, 60, nullptr, nullptr, nullptr, nullptr);
    fake::g_device.taskbar = taskbar_;
    Open(IDD_USAGE);
    RECT again;
    GetWindowRect(dialog_, &again);
    EXPECT_EQ(std::max((320 - h) / 2, 61), again.top);
    EXPECT_EQ(w, again.right - again.left);   // grown once, at opening

    // The template's own size, one pixel larger each way.
    HINSTANCE instance = GetModuleHandleW(nullptr);
    HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(IDD_USAGE), RT_DIALOG);
    auto tpl = static_cast<LPCDLGTEMPLATEW>(LockResource(LoadResource(instance, found)));
    HWND plain = CreateDialogIndirectParamW(
        instance, tpl, nullptr, [](HWND, UINT m, WPARAM, LPARAM) -> INT_PTR { return m == WM_INITDIALOG; }, 0);
    RECT natural;
    GetWindowRect(plain, &natural);
    DestroyWindow(plain);
    EXPECT_EQ(natural.right - natural.left + 1, w);
    EXPECT_EQ(natural.bottom - natural.top + 1, h);
}

TEST_F(UsageDialog, DateChangesResetThePageOnlyInTheTable)
{
    Open(IDD_USAGE);
    g_usage.page = 2;
    ChangeDate(2025, 12, 3);
    EXPECT_EQ(2025, g_usage.year);
    EXPECT_EQ(12, g_usage.month);
    EXPECT_EQ(3, g_usage.day);
    EXPECT_EQ(2, g_usage.page);   // chart view keeps it

    g_usage.view = USAGE_VIEW_TABLE;
    ChangeDate(2025, 12, 3);      // the same date: nothing happens
    EXPECT_EQ(2, g_usage.page);
    ChangeDate(2024, 2, 1, GDT_NONE);
    EXPECT_EQ(2025, g_usage.year);
    EXPECT_EQ(2, g_usage.page);
    ChangeDate(2025, 12, 4);
    EXPECT_EQ(4, g_usage.day);
    EXPECT_EQ(0, g_usage.page);

    Paint();
    EXPECT_EQ(L"Daily Traffic for Dec 2025", Text(IDC_USAGE_TITLE));
}

TEST_F(UsageDialog, ModeChangesOnlyFromTheDroppedListAndOnlyHourlyResetsThePage)
{
    Open(IDD_USAGE);
    g_usage.page = 1;
    PickMode(1, false);
    EXPECT_EQ(USAGE_DAILY, g_usage.mode);

    PickMode(1, true);
    EXPECT_EQ(USAGE_HOURLY, g_usage.mode);
    EXPECT_EQ(0, g_usage.page);
    Paint();
    EXPECT_EQ(L"Hourly Traffic for Jan 15, 2026", Text(IDC_USAGE_TITLE));
    EXPECT_EQ(24, g_usage.slots);

    g_usage.page = 1;
    PickMode(0, true);
    EXPECT_EQ(USAGE_DAILY, g_usage.mode);
    EXPECT_EQ(1, g_usage.page);
}

TEST_F(UsageDialog, HeaderIconsSwitchTheViewAndOpenTheExport)
{
    Open(IDD_USAGE);
    g_usage.page = 3;
    Tap(31, 43);
    EXPECT_EQ(USAGE_VIEW_TABLE, g_usage.view);
    EXPECT_EQ(0, g_usage.page);
    g_usage.page = 1;
    Tap(56, 68);                  // the table again: nothing changes
    EXPECT_EQ(1, g_usage.page);
    Tap(73, 50);
    EXPECT_EQ(USAGE_VIEW_CHART, g_usage.view);
    EXPECT_EQ(1, g_usage.page);   // the chart keeps the page
    Tap(60, 50);                  // between icons
    Tap(73, 69);                  // below them
    EXPECT_EQ(USAGE_VIEW_CHART, g_usage.view);
    EXPECT_TRUE(fake::g_device.dialogs.empty());

    Tap(182, 68);
    ASSERT_EQ(1u, fake::g_device.dialogs.size());
    EXPECT_EQ(IDD_EXPORT, fake::TemplateId(GetModuleHandleW(nullptr), fake::g_device.dialogs[0].dialogTemplate));
    EXPECT_EQ(dialog_, fake::g_device.dialogs[0].owner);
    EXPECT_EQ(reinterpret_cast<DLGPROC>(ExportDlgProc), fake::g_device.dialogs[0].proc);
}

TEST_F(UsageDialog, PageArrowsFollowTheRowsWithData)
{
    WriteLog(2026, 1, 8);
    Open(IDD_USAGE);
    ReadUsageLog();
    EXPECT_EQ(8, g_usage.rowsWithData);
    Tap(150, 206);                // next, portrait: 8 rows are one page
    EXPECT_EQ(0, g_usage.page);

    WriteLog(2026, 1, 9);
    ReadUsageLog();
    Tap(167, 215);
    EXPECT_EQ(1, g_usage.page);
    Tap(160, 210);                // no third page
    EXPECT_EQ(1, g_usage.page);
    Tap(193, 206);                // previous
    EXPECT_EQ(0, g_usage.page);
    Tap(176, 206);
    EXPECT_EQ(0, g_usage.page);

    // Hour 0 counts: day 1's only record is at hour 0.
    g_usage.mode = USAGE_HOURLY;
    g_usage.day = 1;
    ReadUsageLog();
    EXPECT_EQ(1, g_usage.rowsWithData);
}

TEST_F(UsageDialog, LandscapeAndHiResMoveThePageArrows)
{
    WriteLog(2026, 1, 20);
    fake::SetScreen(320, 240);
    Open(IDD_USAGE_WIDE);
    ReadUsageLog();
    Tap(150, 210);                // the portrait place does nothing here
    EXPECT_EQ(0, g_usage.page);
    Tap(230, 107);
    EXPECT_EQ(1, g_usage.page);
    Tap(208, 120);
    EXPECT_EQ(2, g_usage.page);
    Tap(231, 110);
    EXPECT_EQ(1, g_usage.page);
    Tap(255, 110);
    EXPECT_EQ(0, g_usage.page);
    DestroyWindow(dialog_);

    fake::SetScreen(480, 640);
    Open(IDD_USAGE);
    ReadUsageLog();
    Tap(150, 206);                // logical units are doubled
    EXPECT_EQ(0, g_usage.page);
    Tap(300, 412);
    EXPECT_EQ(1, g_usage.page);
    Tap(62, 86);
    EXPECT_EQ(USAGE_VIEW_TABLE, g_usage.view);
}

} // namespace
