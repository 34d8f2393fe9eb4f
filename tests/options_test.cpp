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
        lstrcpyW(g_item.dataFolder, (TestRoot() + L"\\logs").c_str());
        CreateDirectoryW(g_item.dataFolder, nullptr);
    }
    void TearDown() override { DestroyWindow(page_); DeviceTest::TearDown(); }
    void Open(int id, DLGPROC proc)
    {
        DestroyWindow(page_);
        page_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(id), parent_, proc, 0);
    }
    void Notify(UINT code)
    {
        NMHDR header = {GetParent(page_), 0, code};
        SendMessageW(page_, WM_NOTIFY, 0, (LPARAM)&header);
    }
    void Click(int id) { SendMessageW(page_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    // Every row of a list view, its columns joined by "|".
    Texts Rows(int id)
    {
        Texts rows;
        for (int r = 0; r < ListView_GetItemCount(GetDlgItem(page_, id)); r++) {
            WCHAR a[64] = L"", b[64] = L"";
            ListView_GetItemText(GetDlgItem(page_, id), r, 0, a, 64);
            ListView_GetItemText(GetDlgItem(page_, id), r, 1, b, 64);
            rows.push_back(std::wstring(a) + L"|" + b);
        }
        return rows;
    }
    std::wstring Log(const wchar_t *name) { return std::wstring(g_item.dataFolder) + L"\\" + name; }
    void Touch(std::initializer_list<const wchar_t *> names)
    {
        for (const wchar_t *name : names)
            CloseHandle(CreateFileW(Log(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    bool Exists(const wchar_t *name) { return GetFileAttributesW(Log(name).c_str()) != INVALID_FILE_ATTRIBUTES; }
    // The last message box as "text|caption".
    std::wstring LastBox() { auto &b = fake::g_device.messageBoxes; return b.empty() ? L"" : b.back().text + L"|" + b.back().caption; }
    HWND page_ = nullptr;
};

TEST_F(OptionsPages, TheSettingsDialogBecomesAFullScreenPageBehindTheSheetAndApplyEndsBoth)
{
    // Any template will do for the settings' dialog: it only holds the sheet.
    Open(IDD_OPT_ABOUT, CustomItemOptionsDlgProc);
    EXPECT_EQ(std::vector<DWORD>{SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN | SHIDIF_SIPDOWN},
              fake::g_sheets.initDialogFlags);
    const fake::SheetRun run = fake::g_sheets.runs.at(0);
    EXPECT_EQ(L"Quorvane", run.caption);
    EXPECT_EQ((DWORD)(PSH_PROPSHEETPAGE | PSH_USECALLBACK | PSH_MAXIMIZE), run.flags);
    EXPECT_EQ(524, run.callback(nullptr, PSCB_GETVERSION, 0));   // the device's current look
    EXPECT_EQ((Texts{L"Adapter", L"Options", L"About"}),
              (Texts{run.pages.at(0).title, run.pages.at(1).title, run.pages.at(2).title}));
    // Apply on any page ends the sheet and the dialog.
    g_optionsDialog = parent_;
    for (const fake::SheetPage &page : run.pages) {
        fake::g_sheets.destroyed.clear();
        Open(page.templateId, page.proc);
        Notify(PSN_APPLY);
        EXPECT_EQ(std::vector<HWND>{parent_}, fake::g_sheets.destroyed) << page.title;
        MSG msg;
        EXPECT_TRUE(PeekMessageW(&msg, parent_, WM_COMMAND, WM_COMMAND, PM_REMOVE) && msg.wParam == IDOK) << page.title;
    }
}

TEST_F(OptionsPages, OptionsPageSavesOnlyWhatChangedAndListsLogsByTheirFirstSixDigitsDeletedAfterTheQuestion)
{
    auto saved = []() {
        return std::vector<DWORD>{RegistryDword(L"TIcon"), RegistryDword(L"TFormat"), RegistryDword(L"XLocation")};
    };
    g_item.xLocation = 639;
    g_item.showTaskbarIcon = g_item.amPmFormat = false;
    DeleteItemKey();
    Touch({L"2006.log", L"200611-copy.log", L"200512.log", L"20x612.log", L"200701.txt", L"notes.log"});
    CreateDirectoryW(Log(L"200801.log").c_str(), nullptr);
    Open(IDD_OPT_OPTIONS, OptionsPageProc);
    EXPECT_TRUE(!IsDlgButtonChecked(page_, IDC_OPT_TASKBAR_ICON) && IsDlgButtonChecked(page_, IDC_OPT_MILITARY) &&
                !IsDlgButtonChecked(page_, IDC_OPT_AMPM));
    Notify(PSN_KILLACTIVE);
    EXPECT_EQ(std::vector<DWORD>(3, 0xDEADBEEF), saved());
    // The up-down runs from 639 down to 0: its up arrow moves the icon left.
    EXPECT_EQ(0x027F0000, (DWORD)SendDlgItemMessageW(page_, IDC_OPT_XSPIN, UDM_GETRANGE, 0, 0));
    SendDlgItemMessageW(page_, IDC_OPT_XLOCATION, WM_KEYDOWN, VK_UP, 0);
    CheckDlgButton(page_, IDC_OPT_TASKBAR_ICON, BST_CHECKED);
    CheckRadioButton(page_, IDC_OPT_AMPM, IDC_OPT_MILITARY, IDC_OPT_AMPM);
    Notify(PSN_KILLACTIVE);
    EXPECT_TRUE(g_item.showTaskbarIcon && g_item.amPmFormat && g_item.xLocation == 638);
    EXPECT_EQ((std::vector<DWORD>{1, 1, 638}), saved());
    CheckDlgButton(page_, IDC_OPT_TASKBAR_ICON, BST_UNCHECKED);
    CheckRadioButton(page_, IDC_OPT_AMPM, IDC_OPT_MILITARY, IDC_OPT_MILITARY);
    SetDlgItemTextW(page_, IDC_OPT_XLOCATION, L"700");   // kept within the screen
    Notify(PSN_KILLACTIVE);
    EXPECT_EQ((std::vector<DWORD>{0, 0, 639}), saved());

    Texts rows = Rows(IDC_OPT_LOGS);
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ((Texts{L"2005|12", L"2006|11"}), rows);
    // The row names its file again: the copy's row deletes 200611.log.
    Touch({L"200611.log"});
    ListView_SetItemState(GetDlgItem(page_, IDC_OPT_LOGS), Rows(IDC_OPT_LOGS).at(0) == L"2006|11" ? 0 : 1, LVIS_SELECTED,
                          LVIS_SELECTED);
    for (int answer : {IDCANCEL, IDOK}) {
        fake::g_device.messageBoxAnswer = answer;
        Click(IDC_OPT_DELETE);
        EXPECT_EQ(answer == IDCANCEL, Exists(L"200611.log"));
        EXPECT_EQ(L"Are you sure you want to delete 2006/11 log data?|Question", LastBox());
    }
    EXPECT_EQ(2u, Rows(IDC_OPT_LOGS).size());

    Click(IDC_OPT_DELETE_ALL);
    EXPECT_EQ(L"Are you sure you want to delete ALL log data?|Question", LastBox());
    EXPECT_FALSE(Exists(L"200512.log") || Exists(L"notes.log") || Exists(L"200611-copy.log"));
    EXPECT_TRUE(Exists(L"200701.txt"));
    EXPECT_TRUE(Rows(IDC_OPT_LOGS).empty());
}

TEST_F(OptionsPages, AdapterPageShowsTheFirstEthernetAdapterAndItsProperties)
{
    fake::g_device.adapters = {{"WLAN1", L"", 71, 2, 0, 0},
                               {"NE20001", L"", MIB_IF_TYPE_ETHERNET, 3, 0, 0, "NE2000 Compatible",
                                {0x00, 0x0a, 0xf5, 0x1b, 0x2c, 0x3d}, "192.168.1.34", "", "", "192.168.1.1", false, 0, 0,
                                false, "", "", 0, 1000000}};
    fake::Adapter &a = fake::g_device.adapters.back();
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ((Texts{L"Adapter|NE2000 Compatible", L"Type|ethernet", L"Speed|1 Mbps", L"IP Address|192.168.1.34",
                     L"MAC Address|00:0A:F5:1B:2C:3D", L"DHCP Server|192.168.1.1"}),
              Rows(IDC_OPT_ADAPTER_ROWS));
    EXPECT_STREQ(L"NE20001", g_item.adapterName);

    // Without DHCP the row repeats the row before it; without a hardware
    // address the MAC row repeats the IP address.
    a.speed = 999999;
    a.dhcpOff = true;
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ((Texts{L"Speed|999999 bps", L"DHCP Server|00:0A:F5:1B:2C:3D"}),
              (Texts{Rows(IDC_OPT_ADAPTER_ROWS).at(2), Rows(IDC_OPT_ADAPTER_ROWS).at(5)}));
    a.mac.clear();
    fake::FailCall(fake::kGetIfEntry, 1, true);   // a failing interface read leaves out type and speed
    Open(IDD_OPT_ADAPTER, AdapterPageProc);
    EXPECT_EQ((Texts{L"Adapter|NE2000 Compatible", L"IP Address|192.168.1.34", L"MAC Address|192.168.1.34",
                     L"DHCP Server|192.168.1.34"}),
              Rows(IDC_OPT_ADAPTER_ROWS));
}

} // namespace
