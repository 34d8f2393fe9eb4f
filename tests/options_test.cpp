// options_test.cpp: the options sheet and its pages from their templates on the fake device.
#include "options/options.h"
#include "platform/fake/fake_sheet.h"
#include "resources/resource.h"
#include "tests/support.h"

#include <commctrl.h>

#include <algorithm>

namespace {

class OptionsPages : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        parent_ = CreateParentWindow();
    }
    void TearDown() override
    {
        DestroyWindow(page_);
        DeviceTest::TearDown();
    }
    HWND Open(int id, DLGPROC proc)
    {
        DestroyWindow(page_);
        page_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(id), parent_, proc, 0);
        EXPECT_NE(nullptr, page_);
        return page_;
    }
    void Notify(UINT code)
    {
        NMHDR header = {GetParent(page_), 0, code};
        SendMessageW(page_, WM_NOTIFY, 0, (LPARAM)&header);
    }
    void Click(int id) { SendMessageW(page_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), (LPARAM)GetDlgItem(page_, id)); }
    std::wstring Text(int id)
    {
        WCHAR text[64] = L"";
        GetDlgItemTextW(page_, id, text, 64);
        return text;
    }
    // Every row of a list view, its columns joined by "|".
    std::vector<std::wstring> Rows(int id)
    {
        HWND list = GetDlgItem(page_, id);
        std::vector<std::wstring> rows;
        for (int r = 0; r < ListView_GetItemCount(list); r++) {
            WCHAR a[64] = L"", b[64] = L"";
            ListView_GetItemText(list, r, 0, a, 64);
            ListView_GetItemText(list, r, 1, b, 64);
            rows.push_back(std::wstring(a) + L"|" + b);
        }
        return rows;
    }
    std::wstring LogFile(const std::wstring &name) { return std::wstring(g_item.dataFolder) + L"\\" + name; }
    void Touch(const std::wstring &name)
    {
        HANDLE h = CreateFileW(LogFile(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        ASSERT_NE(INVALID_HANDLE_VALUE, h);
        CloseHandle(h);
    }
    bool Exists(const std::wstring &name) { return GetFileAttributesW(LogFile(name).c_str()) != INVALID_FILE_ATTRIBUTES; }
    void UseLogFolder()
    {
        lstrcpyW(g_item.dataFolder, (TestRoot() + L"\\logs").c_str());
        CreateDirectoryW(g_item.dataFolder, nullptr);
    }

    HWND page_ = nullptr;
};

TEST_F(OptionsPages, TheSettingsDialogBecomesAFullScreenPageBehindTheSheet)
{
    // Any template will do for the settings' dialog: it only holds the sheet.
    HWND dialog = Open(IDD_OPT_ABOUT, CustomItemOptionsDlgProc);
    ASSERT_EQ(1u, fake::g_sheets.runs.size());
    EXPECT_EQ(std::vector<DWORD>{SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN | SHIDIF_SIPDOWN},
              fake::g_sheets.initDialogFlags);
    const fake::SheetRun &run = fake::g_sheets.runs[0];
    EXPECT_EQ(L"Quorvane", run.caption);
    EXPECT_EQ((DWORD)(PSH_PROPSHEETPAGE | PSH_USECALLBACK | PSH_MAXIMIZE), run.flags);
    EXPECT_EQ(dialog, run.owner);
    EXPECT_EQ(0u, run.startPage);
    ASSERT_EQ(3u, run.pages.size());
    const struct { int id; const wchar_t *title; DLGPROC proc; } pages[] = {
        {IDD_OPT_ADAPTER, L"Adapter", AdapterPageProc}, {IDD_OPT_OPTIONS, L"Options", OptionsPageProc},
        {IDD_OPT_ABOUT, L"About", AboutPageProc}};
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(pages[i].id, run.pages[i].templateId) << i;
        EXPECT_EQ(pages[i].title, run.pages[i].title) << i;
        EXPECT_EQ((DWORD)PSP_USETITLE, run.pages[i].flags) << i;
        EXPECT_EQ(pages[i].proc, run.pages[i].proc) << i;
    }
    EXPECT_EQ(524, run.callback(nullptr, PSCB_GETVERSION, 0));
    EXPECT_EQ(0, run.callback(nullptr, PSCB_INITIALIZED, 0));
    EXPECT_EQ(dialog, g_optionsDialog);
}

// Apply on the Adapter, Options or About page ends the sheet and the dialog.
TEST_F(OptionsPages, ApplyOnEveryPageClosesTheSheetAndTheDialog)
{
    const DLGPROC procs[] = {AdapterPageProc, OptionsPageProc, AboutPageProc};
    const int ids[] = {IDD_OPT_ADAPTER, IDD_OPT_OPTIONS, IDD_OPT_ABOUT};
    g_optionsDialog = parent_;
    for (int i = 0; i < 3; i++) {
        fake::g_sheets.destroyed.clear();
        Open(ids[i], procs[i]);
        Notify(PSN_APPLY);
        EXPECT_EQ(std::vector<HWND>{parent_}, fake::g_sheets.destroyed) << i;
        MSG msg;
        ASSERT_TRUE(PeekMessageW(&msg, parent_, WM_COMMAND, WM_COMMAND, PM_REMOVE)) << i;
        EXPECT_EQ(IDOK, (int)msg.wParam) << i;
    }
}

TEST_F(OptionsPages, OptionsPageShowsTheSettingsAndAReversedUpDown)
{
    g_item.xLocation = 639;
    g_item.showTaskbarIcon = false;
    g_item.amPmFormat = false;
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    EXPECT_EQ(L"639", Text(IDC_OPT_XLOCATION));
    EXPECT_EQ(L"Today: Quorvane", Text(IDC_OPT_HEADER));
    EXPECT_EQ(BST_UNCHECKED, IsDlgButtonChecked(page_, IDC_OPT_TASKBAR_ICON));
    EXPECT_EQ(BST_CHECKED, IsDlgButtonChecked(page_, IDC_OPT_MILITARY));
    EXPECT_EQ(BST_UNCHECKED, IsDlgButtonChecked(page_, IDC_OPT_AMPM));
    HWND spin = GetDlgItem(page_, IDC_OPT_XSPIN);
    EXPECT_EQ(0x027F0000, (DWORD)SendMessageW(spin, UDM_GETRANGE, 0, 0));
    EXPECT_EQ(639, LOWORD(SendMessageW(spin, UDM_GETPOS, 0, 0)));
    // The up arrow moves the icon left.
    SendMessageW(GetDlgItem(page_, IDC_OPT_XLOCATION), WM_KEYDOWN, VK_UP, 0);
    EXPECT_EQ(L"638", Text(IDC_OPT_XLOCATION));
}

TEST_F(OptionsPages, LeavingThePageSavesTheXLocationWithinTheScreen)
{
    struct Case {
        const wchar_t *text;
        DWORD saved;
    } cases[] = {{L"700", 639}, {L"639", 639}, {L"0", 0}, {L"80", 80}};
    for (const Case &c : cases) {
        g_item.xLocation = 75;
        Open(IDD_OPT_OPTIONS, OptionsPageProc);
        SetDlgItemTextW(page_, IDC_OPT_XLOCATION, c.text);
        Notify(PSN_KILLACTIVE);
        EXPECT_EQ(c.saved, g_item.xLocation) << c.text;
        EXPECT_EQ(c.saved, RegistryDword(L"XLocation")) << c.text;
    }
}

// The icon's last background is put back at the old place; the next tick
// draws the icon at the new one.
TEST_F(OptionsPages, AMovedIconIsErasedAtItsOldPlaceAndDrawnAtTheNewOne)
{
    HDC screen = fake::g_device.screenDC;
    RECT bar = {0, 0, 240, 26};
    HBRUSH green = CreateSolidBrush(RGB(0, 128, 0));
    FillRect(screen, &bar, green);
    DeleteObject(green);
    fake::g_device.taskbar = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 240, 26, nullptr,
                                             nullptr, nullptr, nullptr);
    ValidateRect(fake::g_device.taskbar, nullptr);
    g_item.xLocation = 100;
    g_item.sampleCount = 0;   // primed: the next tick draws
    OnTick(nullptr);
    COLORREF drawn = fake::ScreenPixel(108, 12);
    ASSERT_NE(RGB(0, 128, 0), drawn);

    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    SetDlgItemTextW(page_, IDC_OPT_XLOCATION, L"20");
    Notify(PSN_KILLACTIVE);
    for (int y = 5; y < 21; y++)
        for (int x = 100; x < 116; x++)
            ASSERT_EQ(RGB(0, 128, 0), fake::ScreenPixel(x, y)) << x << "," << y;
    // The taskbar is asked to paint the old square again.
    RECT update = {};
    ASSERT_TRUE(GetUpdateRect(fake::g_device.taskbar, &update, FALSE));
    EXPECT_EQ(100, update.left);
    EXPECT_EQ(5, update.top);
    EXPECT_EQ(116, update.right);
    EXPECT_EQ(21, update.bottom);
    DestroyWindow(fake::g_device.taskbar);
    OnTick(nullptr);
    EXPECT_EQ(drawn, fake::ScreenPixel(28, 12));
    EXPECT_EQ(RGB(0, 128, 0), fake::ScreenPixel(108, 12));
    EXPECT_EQ(0, fake::g_device.screenDCsOut);
}

TEST_F(OptionsPages, LeavingThePageSavesTheIconAndHourFormatOnlyWhenChanged)
{
    g_item.showTaskbarIcon = true;
    g_item.amPmFormat = true;
    DeleteItemKey();
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    Notify(PSN_KILLACTIVE);
    EXPECT_EQ(0xDEADBEEF, RegistryDword(L"TIcon"));
    EXPECT_EQ(0xDEADBEEF, RegistryDword(L"TFormat"));
    EXPECT_EQ(0xDEADBEEF, RegistryDword(L"XLocation"));

    CheckDlgButton(page_, IDC_OPT_TASKBAR_ICON, BST_UNCHECKED);
    CheckRadioButton(page_, IDC_OPT_AMPM, IDC_OPT_MILITARY, IDC_OPT_MILITARY);
    Notify(PSN_KILLACTIVE);
    EXPECT_FALSE(g_item.showTaskbarIcon);
    EXPECT_FALSE(g_item.amPmFormat);
    EXPECT_EQ(0u, RegistryDword(L"TIcon"));
    EXPECT_EQ(0u, RegistryDword(L"TFormat"));
    CheckRadioButton(page_, IDC_OPT_AMPM, IDC_OPT_MILITARY, IDC_OPT_AMPM);
    Notify(PSN_KILLACTIVE);
    EXPECT_TRUE(g_item.amPmFormat);
    EXPECT_EQ(1u, RegistryDword(L"TFormat"));
}

TEST_F(OptionsPages, LogListShowsFilesByTheirFirstSixDigits)
{
    UseLogFolder();
    for (const wchar_t *name : {L"2006.log", L"200611.log", L"200611-copy.log", L"200512.log", L"20x612.log",
                                L"200701.txt"})
        Touch(name);
    CreateDirectoryW(LogFile(L"200801.log").c_str(), nullptr);
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    std::vector<std::wstring> rows = Rows(IDC_OPT_LOGS);
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ((std::vector<std::wstring>{L"2005|12", L"2006|11", L"2006|11"}), rows);
    HWND list = GetDlgItem(page_, IDC_OPT_LOGS);
    for (int r = 0; r < ListView_GetItemCount(list); r++) {
        LVITEMW item = {};
        item.mask = LVIF_PARAM;
        item.iItem = r;
        ListView_GetItem(list, &item);
        EXPECT_TRUE(item.lParam == 200512 || item.lParam == 200611) << item.lParam;
    }
}

TEST_F(OptionsPages, DeleteAsksForTheSelectedMonthAndKeepsTheLastRow)
{
    UseLogFolder();
    Touch(L"200611.log");
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    HWND list = GetDlgItem(page_, IDC_OPT_LOGS);
    ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);

    fake::g_device.messageBoxAnswer = IDCANCEL;
    Click(IDC_OPT_DELETE);
    EXPECT_TRUE(Exists(L"200611.log"));
    fake::g_device.messageBoxAnswer = IDOK;
    Click(IDC_OPT_DELETE);
    EXPECT_FALSE(Exists(L"200611.log"));
    // The refill finds no log and leaves the list as it was.
    EXPECT_EQ(std::vector<std::wstring>{L"2006|11"}, Rows(IDC_OPT_LOGS));
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    for (const fake::MessageBoxShown &box : fake::g_device.messageBoxes) {
        EXPECT_EQ(L"Are you sure you want to delete 2006/11 log data?", box.text);
        EXPECT_EQ(L"Question", box.caption);
        EXPECT_EQ((UINT)(MB_OKCANCEL | MB_ICONQUESTION), box.type);
    }
}

TEST_F(OptionsPages, DeleteWithNoRowSelectedAsksNothing)
{
    UseLogFolder();
    Touch(L"200611.log");
    Touch(L"200612.log");
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    Click(IDC_OPT_DELETE);
    EXPECT_TRUE(fake::g_device.messageBoxes.empty());
    EXPECT_TRUE(Exists(L"200611.log") && Exists(L"200612.log"));
    EXPECT_EQ(2u, Rows(IDC_OPT_LOGS).size());
}

TEST_F(OptionsPages, DeleteAllRemovesEveryLogAfterItsQuestion)
{
    UseLogFolder();
    Touch(L"200611.log");
    Touch(L"notes.log");
    Touch(L"200611.txt");
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    fake::g_device.messageBoxAnswer = IDCANCEL;
    Click(IDC_OPT_DELETE_ALL);
    EXPECT_TRUE(Exists(L"200611.log"));
    EXPECT_EQ(1u, Rows(IDC_OPT_LOGS).size());
    fake::g_device.messageBoxAnswer = IDOK;
    Click(IDC_OPT_DELETE_ALL);
    EXPECT_FALSE(Exists(L"200611.log"));
    EXPECT_FALSE(Exists(L"notes.log"));
    EXPECT_TRUE(Exists(L"200611.txt"));
    EXPECT_TRUE(Rows(IDC_OPT_LOGS).empty());
    ASSERT_EQ(2u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"Are you sure you want to delete ALL log data?", fake::g_device.messageBoxes[1].text);
    EXPECT_EQ(L"Question", fake::g_device.messageBoxes[1].caption);
}

class AdapterPage : public OptionsPages {
protected:
    fake::Adapter &AddAdapter(const char *name, UINT type, DWORD index)
    {
        fake::Adapter a = {name, L"", type, index, 0, 0};
        fake::g_device.adapters.push_back(a);
        return fake::g_device.adapters.back();
    }
    fake::Adapter &AddCard()
    {
        AddAdapter("WLAN1", 71, 2);
        fake::Adapter &a = AddAdapter("NE20001", MIB_IF_TYPE_ETHERNET, 3);
        a.description = "NE2000 Compatible";
        a.ip = "192.168.1.34";
        a.mac = {0x00, 0x0a, 0xf5, 0x1b, 0x2c, 0x3d};
        a.dhcpServer = "192.168.1.1";
        a.speed = 11000000;
        return a;
    }
};

TEST_F(AdapterPage, ShowsTheFirstEthernetAdapterAndItsProperties)
{
    AddCard();
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ((std::vector<std::wstring>{L"Adapter|NE2000 Compatible", L"Type|ethernet", L"Speed|11 Mbps",
                                         L"IP Address|192.168.1.34", L"MAC Address|00:0A:F5:1B:2C:3D",
                                         L"DHCP Server|192.168.1.1"}),
              Rows(IDC_OPT_ADAPTER_ROWS));
    HWND combo = GetDlgItem(page_, IDC_OPT_ADAPTER);
    EXPECT_EQ(1, SendMessageW(combo, CB_GETCOUNT, 0, 0));
    EXPECT_EQ(0, SendMessageW(combo, CB_GETCURSEL, 0, 0));
    EXPECT_EQ(L"NE20001", Text(IDC_OPT_ADAPTER));
    EXPECT_STREQ(L"NE20001", g_item.adapterName);
}

TEST_F(AdapterPage, SpeedInBitsOrMegabits)
{
    struct Case {
        DWORD speed;
        const wchar_t *row;
    } cases[] = {{11000000, L"Speed|11 Mbps"}, {999999, L"Speed|999999 bps"}, {1000000, L"Speed|1 Mbps"}};
    for (const Case &c : cases) {
        fake::g_device.adapters.clear();
        AddCard().speed = c.speed;
        Open(IDD_OPT_ADAPTER, AdapterPageProc);
        std::vector<std::wstring> rows = Rows(IDC_OPT_ADAPTER_ROWS);
        ASSERT_EQ(6u, rows.size()) << c.speed;
        EXPECT_EQ(c.row, rows[2]) << c.speed;
    }
}

// Without DHCP the row repeats the row before it; without a hardware
// address the MAC row repeats the IP address.
TEST_F(AdapterPage, RowsCarryTheValueBeforeThemOver)
{
    fake::Adapter &card = AddCard();
    card.dhcpOff = true;
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ(L"DHCP Server|00:0A:F5:1B:2C:3D", Rows(IDC_OPT_ADAPTER_ROWS).back());

    card.mac.clear();
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    std::vector<std::wstring> rows = Rows(IDC_OPT_ADAPTER_ROWS);
    ASSERT_EQ(6u, rows.size());
    EXPECT_EQ(L"MAC Address|192.168.1.34", rows[4]);
    EXPECT_EQ(L"DHCP Server|192.168.1.34", rows[5]);
}

TEST_F(AdapterPage, AFailingInterfaceReadLeavesOutTypeAndSpeed)
{
    AddCard();
    fake::FailCall(fake::kGetIfEntry, 1, true);
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ((std::vector<std::wstring>{L"Adapter|NE2000 Compatible", L"IP Address|192.168.1.34",
                                         L"MAC Address|00:0A:F5:1B:2C:3D", L"DHCP Server|192.168.1.1"}),
              Rows(IDC_OPT_ADAPTER_ROWS));
}

TEST_F(AdapterPage, NoEthernetAdapterLeavesTheControlsEmpty)
{
    AddAdapter("WLAN1", 71, 2);
    lstrcpyW(g_item.adapterName, L"before");
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_TRUE(Rows(IDC_OPT_ADAPTER_ROWS).empty());
    EXPECT_EQ(0, SendMessageW(GetDlgItem(page_, IDC_OPT_ADAPTER), CB_GETCOUNT, 0, 0));
    EXPECT_EQ(2, Header_GetItemCount(ListView_GetHeader(GetDlgItem(page_, IDC_OPT_ADAPTER_ROWS))));
    EXPECT_STREQ(L"before", g_item.adapterName);
}

} // namespace
