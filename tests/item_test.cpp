// item_test.cpp: start-up, settings and the Today screen's cache messages.
#include "tests/support.h"
#include "wireless/wireless.h"

#include <shlobj.h>

namespace {

using ItemStartup = DeviceTest;

TEST_F(ItemStartup, DefaultsAreUsedAndWrittenBack)
{
    EXPECT_EQ(75u, g_item.xLocation);
    EXPECT_TRUE(g_item.showTaskbarIcon);
    EXPECT_TRUE(g_item.amPmFormat);
    EXPECT_EQ(75u, RegistryDword(L"XLocation"));
    EXPECT_EQ(1u, RegistryDword(L"TIcon"));
    EXPECT_EQ(1u, RegistryDword(L"TFormat"));

    EXPECT_EQ(-1, g_item.sampleCount);
    EXPECT_EQ(-1, g_item.ringIndex);
    EXPECT_EQ(-1, g_item.ringStart);
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);
    EXPECT_EQ(NO_SIGNAL, g_item.signalDbm);
    for (int v : g_item.signalHistory)
        EXPECT_EQ(NO_SIGNAL, v);
    EXPECT_EQ(240, g_item.screenWidth);
    EXPECT_EQ(320, g_item.screenHeight);
    EXPECT_NE(nullptr, g_item.redPen);
    EXPECT_NE(nullptr, g_item.taskbarBackground);
    EXPECT_FALSE(g_item.gdiReady);
    EXPECT_FALSE(g_item.timerRunning);
}

TEST_F(ItemStartup, StartUpForgetsTheWirelessAdapterLeaving)
{
    WirelessLostValue = 1234;
    g_item.signalTiming = true;
    Attach();
    EXPECT_EQ(0xFFFFFFFFu, WirelessLostValue);
    EXPECT_FALSE(g_item.signalTiming);
}

TEST_F(ItemStartup, XLocationIsClampedTo639AndWrittenBack)
{
    struct {
        DWORD stored, used;
    } cases[] = {{639, 639}, {640, 639}, {0xFFFFFFFF, 639}, {0, 0}, {320, 320}};
    for (auto c : cases) {
        DeleteItemKey();
        WriteSettingDword(L"XLocation", c.stored);
        Attach();
        EXPECT_EQ(c.used, g_item.xLocation) << c.stored;
        EXPECT_EQ(c.used, RegistryDword(L"XLocation")) << c.stored;
    }
}

TEST_F(ItemStartup, StoredFlagsAreReadAsNonZero)
{
    WriteSettingDword(L"TFormat", 7);
    WriteSettingDword(L"TIcon", 0);
    Attach();
    EXPECT_TRUE(g_item.amPmFormat);
    EXPECT_FALSE(g_item.showTaskbarIcon);
    // Stored values are left as they are.
    EXPECT_EQ(7u, RegistryDword(L"TFormat"));
    EXPECT_EQ(0u, RegistryDword(L"TIcon"));

    WriteSettingDword(L"TFormat", 0);
    Attach();
    EXPECT_FALSE(g_item.amPmFormat);
}

TEST_F(ItemStartup, WrongValueTypeFallsBackToDefault)
{
    WriteSettingString(L"XLocation", L"100");
    Attach();
    EXPECT_EQ(75u, g_item.xLocation);
    EXPECT_EQ(75u, RegistryDword(L"XLocation"));
}

TEST_F(ItemStartup, DataFolderDefaultsUnderProgramFiles)
{
    std::wstring expected = fake::g_device.programFiles + L"\\Ostrik\\Quorvane";
    EXPECT_STREQ(expected.c_str(), g_item.dataFolder);
    DWORD attributes = GetFileAttributesW(expected.c_str());
    ASSERT_NE(INVALID_FILE_ATTRIBUTES, attributes);
    EXPECT_TRUE(attributes & FILE_ATTRIBUTE_DIRECTORY);

    WCHAR stored[260];
    EXPECT_FALSE(ReadSettingString(L"InstallDir", stored, sizeof stored));
}

TEST_F(ItemStartup, StoredInstallDirAndAdapterAreUsed)
{
    WriteSettingString(L"InstallDir", L"\\Storage Card\\Logs");
    WriteSettingString(L"Adapter", L"PCI\\NE20001");
    Attach();
    EXPECT_STREQ(L"\\Storage Card\\Logs", g_item.dataFolder);
    EXPECT_STREQ(L"PCI\\NE20001", g_item.adapterName);
    // The adapter is resolved again by the first tick.
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);
}

TEST_F(ItemStartup, AnOverlongStoredStringIsCutNotOverrun)
{
    WCHAR longName[300];
    for (int i = 0; i < 299; i++)
        longName[i] = L'a' + i % 26;
    longName[299] = 0;
    WriteSettingString(L"Adapter", longName);
    Attach();
    EXPECT_LT(lstrlenW(g_item.adapterName), 128);
}

TEST_F(ItemStartup, NoAdapterLeavesTheNameEmptyAndUnwritten)
{
    EXPECT_STREQ(L"", g_item.adapterName);
    WCHAR stored[128];
    EXPECT_FALSE(ReadSettingString(L"Adapter", stored, sizeof stored));
}

TEST_F(ItemStartup, TaskbarBackgroundIsTheScreenUnderTheIcon)
{
    HBRUSH red = CreateSolidBrush(RGB(200, 10, 10));
    RECT square = {75, 5, 91, 21};
    FillRect(fake::g_device.screenDC, &square, red);
    DeleteObject(red);
    Attach();
    ASSERT_NE(nullptr, g_item.taskbarBackground);

    HDC memory = CreateCompatibleDC(fake::g_device.screenDC);
    HGDIOBJ old = SelectObject(memory, g_item.taskbarBackground);
    EXPECT_EQ(RGB(200, 10, 10), GetPixel(memory, 0, 0));
    EXPECT_EQ(RGB(200, 10, 10), GetPixel(memory, 15, 15));
    SelectObject(memory, old);
    DeleteDC(memory);
    EXPECT_EQ(0, fake::g_device.screenDCsOut);
}

TEST_F(ItemStartup, NoScreenMeansNoBackgroundAndNoCrash)
{
    fake::FailCall(fake::kGetDC, 1, true);
    Attach();
    EXPECT_EQ(nullptr, g_item.taskbarBackground);
}

TEST_F(ItemStartup, FailedClassRegistrationIsReported)
{
    // While an item window lives the class cannot be unregistered, so a
    // second attach fails to register it again.
    ASSERT_NE(nullptr, CreateItem());
    EXPECT_FALSE(AttachModule(GetModuleHandleW(nullptr)));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"RegisterClass() failed", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error! - quorvane.dll", fake::g_device.messageBoxes[0].caption);
    EXPECT_TRUE(fake::g_device.messageBoxes[0].type & MB_ICONEXCLAMATION);
}

using ItemWindow = DeviceTest;

TEST_F(ItemWindow, DisabledItemGetsNoWindow)
{
    EXPECT_EQ(nullptr, CreateItem(false));
}

TEST_F(ItemWindow, EnabledItemIsAChildOfTheTodayScreen)
{
    HWND item = CreateItem();
    ASSERT_NE(nullptr, item);
    WCHAR cls[32], title[32];
    GetClassNameW(item, cls, 32);
    InternalGetWindowText(item, title, 32);
    EXPECT_STREQ(L"QUORVANECLASS", cls);
    EXPECT_STREQ(L"Quorvane", title);
    EXPECT_EQ(parent_, GetParent(item));
    RECT rc;
    GetWindowRect(item, &rc);
    EXPECT_EQ(240, rc.right - rc.left);
    EXPECT_EQ(0, rc.bottom - rc.top);
    EXPECT_TRUE(GetWindowLongW(item, GWL_STYLE) & WS_CHILD);
}

TEST_F(ItemWindow, RefreshSequenceOnHiResScreen)
{
    fake::SetScreen(480, 640);
    Attach();
    HWND item = CreateItem();
    ASSERT_NE(nullptr, item);
    tli_.cyp = 0;

    EXPECT_EQ(TRUE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_EQ(40u, tli_.cyp);
    EXPECT_FALSE(g_item.timerRunning);
    EXPECT_FALSE(g_item.gdiReady);

    EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_TRUE(g_item.timerRunning);
    ASSERT_TRUE(g_item.gdiReady);
    BITMAP bm;
    ASSERT_TRUE(GetObjectW(g_item.surfaceBitmap, sizeof bm, &bm));
    EXPECT_EQ(88, bm.bmWidth);
    EXPECT_EQ(44, bm.bmHeight);
    HDC surface = g_item.surfaceDC;

    EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_EQ(surface, g_item.surfaceDC);   // made once
    EXPECT_TRUE(g_item.timerRunning);
    // Exactly one timer 11: killing it works once.
    EXPECT_TRUE(KillTimer(item, SAMPLE_TIMER_ID));
    EXPECT_FALSE(KillTimer(item, SAMPLE_TIMER_ID));
}

TEST_F(ItemWindow, NormalScreenAsksFor24Pixels)
{
    HWND item = CreateItem();
    tli_.cyp = 40;
    EXPECT_EQ(TRUE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_EQ(24u, tli_.cyp);
    EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    BITMAP bm;
    ASSERT_TRUE(GetObjectW(g_item.surfaceBitmap, sizeof bm, &bm));
    EXPECT_EQ(44, bm.bmWidth);
    EXPECT_EQ(22, bm.bmHeight);
}

TEST_F(ItemWindow, ClearCacheStopsAndFreesAndARefreshRestartsAll)
{
    HWND item = CreateItem();
    tli_.cyp = 24;
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    ASSERT_TRUE(g_item.timerRunning);

    EXPECT_EQ(0, SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, (LPARAM)&tli_));
    EXPECT_FALSE(g_item.timerRunning);
    EXPECT_FALSE(g_item.gdiReady);
    EXPECT_EQ(nullptr, g_item.surfaceDC);
    EXPECT_EQ(nullptr, g_item.redPen);
    EXPECT_EQ(nullptr, g_item.taskbarBackground);
    EXPECT_FALSE(KillTimer(item, SAMPLE_TIMER_ID));

    EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_TRUE(g_item.timerRunning);
    EXPECT_TRUE(g_item.gdiReady);
    EXPECT_NE(nullptr, g_item.redPen);
    EXPECT_NE(nullptr, g_item.taskbarBackground);
}

TEST_F(ItemWindow, ClearCacheWithoutSurfaceKeepsThePens)
{
    HWND item = CreateItem();
    HPEN red = g_item.redPen;
    ASSERT_FALSE(g_item.gdiReady);
    SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, 0);
    EXPECT_EQ(red, g_item.redPen);
    EXPECT_EQ(nullptr, g_item.taskbarBackground);
}

// Paints a marker where the taskbar icon would be, then clears the cache.
static COLORREF PixelUnderIconAfterClearCache(HWND item, int side)
{
    HBRUSH marker = CreateSolidBrush(RGB(0, 200, 0));
    RECT square = {75, 5, 75 + side, 5 + side};
    FillRect(fake::g_device.screenDC, &square, marker);
    DeleteObject(marker);
    SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, 0);
    return fake::ScreenPixel(80, 10);
}

TEST_F(ItemWindow, ClearCacheRestoresTheScreenUnderTheIcon)
{
    HWND item = CreateItem();
    EXPECT_EQ(RGB(255, 255, 255), PixelUnderIconAfterClearCache(item, 16));
}

TEST_F(ItemWindow, ClearCacheWithIconHiddenLeavesTheScreenAlone)
{
    WriteSettingDword(L"TIcon", 0);
    Attach();
    HWND item = CreateItem();
    EXPECT_EQ(RGB(0, 200, 0), PixelUnderIconAfterClearCache(item, 16));
    EXPECT_EQ(nullptr, g_item.taskbarBackground);
}

TEST_F(ItemWindow, EraseAsksTheTodayScreenForItsBackground)
{
    HWND item = CreateItem();
    SetWindowPos(item, nullptr, 0, 0, 240, 24, SWP_NOZORDER);
    HDC dc = GetDC(item);
    EXPECT_EQ(1, SendMessageW(item, WM_ERASEBKGND, (WPARAM)dc, 0));
    ReleaseDC(item, dc);
    EXPECT_EQ(1, g_watermarkRequests);
    EXPECT_EQ(dc, g_lastWatermark.hdc);
    EXPECT_EQ(item, g_lastWatermark.hwnd);
    EXPECT_EQ(240, g_lastWatermark.rc.right);
    EXPECT_EQ(24, g_lastWatermark.rc.bottom);
}

TEST_F(ItemWindow, OtherMessagesAndTimersAnswerZero)
{
    HWND item = CreateItem();
    EXPECT_EQ(0, SendMessageW(item, WM_TIMER, 99, 0));
    EXPECT_EQ(0, SendMessageW(item, WM_SETTEXT, 0, (LPARAM)L"x"));
    WCHAR title[32];
    InternalGetWindowText(item, title, 32);
    EXPECT_STREQ(L"Quorvane", title);   // not handed to the default procedure
}

} // namespace
