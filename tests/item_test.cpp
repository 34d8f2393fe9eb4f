// item_test.cpp: start-up, settings and the Today screen's cache messages.
#include "tests/support.h"
#include "adapters/adapters.h"
#include "charts/charts.h"
#include "diagnostics/diagnostics.h"
#include "resources/resource.h"
#include "trafficlog/export_dialog.h"
#include "wireless/tools.h"
#include "wireless/wireless.h"

namespace {

using ItemStartup = DeviceTest;

TEST_F(ItemStartup, DefaultsAreWrittenBackAndStoredValuesClampedOrReadAsFlags)
{
    EXPECT_TRUE(RegistryDword(L"XLocation") == 75 && RegistryDword(L"TIcon") == 1 && RegistryDword(L"TFormat") == 1);
    EXPECT_TRUE(g_item.xLocation == 75 && g_item.showTaskbarIcon && g_item.amPmFormat);
    EXPECT_TRUE(g_item.redPen && g_item.bluePen && g_item.silverPen && g_item.taskbarBackground);
    // No adapter: the name stays empty and is not stored. The log folder
    // defaults under Program Files, is created, and is not stored.
    WCHAR stored[260];
    EXPECT_TRUE(!g_item.adapterName[0] && !ReadSettingString(L"Adapter", stored, sizeof stored));
    std::wstring folder = fake::g_device.programFiles + L"\\Ostrik\\Quorvane";
    EXPECT_STREQ(folder.c_str(), g_item.dataFolder);
    EXPECT_TRUE(GetFileAttributesW(folder.c_str()) & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(ReadSettingString(L"InstallDir", stored, sizeof stored));
    // XLocation above 639 is clamped and written back, unsigned; the flags
    // count any non-zero value as set and are left as stored.
    const struct { LPCWSTR name; DWORD stored, used, written; } cases[] = {
        {L"XLocation", 639, 639, 639}, {L"XLocation", 640, 639, 639}, {L"XLocation", 0xFFFFFFFF, 639, 639},
        {L"TFormat", 7, 1, 7},         {L"TIcon", 0, 0, 0}};
    for (auto c : cases) {
        WriteSettingDword(c.name, c.stored);
        Attach();
        DWORD used = c.name[1] == L'L' ? g_item.xLocation : c.name[1] == L'I' ? g_item.showTaskbarIcon : g_item.amPmFormat;
        EXPECT_TRUE(used == c.used && RegistryDword(c.name) == c.written) << c.name << " " << c.stored;
    }
    WriteSettingString(L"XLocation", L"100");   // the wrong type counts as absent
    WirelessLostValue = 1234;                    // and start-up forgets a wireless adapter that was leaving
    g_item.signalTiming = true;
    fake::FailCall(fake::kGetDC, 1, true);       // without a screen there is no snapshot
    Attach();
    EXPECT_TRUE(g_item.xLocation == 75 && RegistryDword(L"XLocation") == 75);
    EXPECT_TRUE(WirelessLostValue == 0xFFFFFFFFu && !g_item.signalTiming && !g_item.taskbarBackground);
}

TEST_F(ItemStartup, StoredStringsAreUsedAndATextWithoutItsEndIsCutToTheBuffer)
{
    WriteSettingString(L"InstallDir", L"\\Storage Card\\Logs");
    WriteSettingString(L"Adapter", L"PCI\\NE20001");
    Attach();
    EXPECT_STREQ(L"\\Storage Card\\Logs", g_item.dataFolder);
    EXPECT_STREQ(L"PCI\\NE20001", g_item.adapterName);
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);     // the first tick resolves it again
    // Stored without its end, 128 characters fill a 128-character buffer:
    // the last gives way to the end. (Another character follows them, or
    // the registry would add the end when the value is set.)
    HKEY key;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_LOCAL_MACHINE, QUORVANE_KEY, 0, KEY_WRITE, &key));
    RegSetValueExW(key, L"Adapter", 0, REG_SZ, (const BYTE *)std::wstring(129, L'a').c_str(), 128 * sizeof(WCHAR));
    RegCloseKey(key);
    WCHAR read[130];
    std::fill(read, read + 130, L'#');
    EXPECT_TRUE(ReadSettingString(L"Adapter", read, 128 * sizeof(WCHAR)));
    EXPECT_EQ(std::wstring(127, L'a'), read);
    // A name longer than the buffer cannot be read at all: it counts as
    // absent, so the adapter is chosen and stored again.
    WriteSettingString(L"Adapter", std::wstring(299, L'a').c_str());
    fake::g_device.adapters.push_back({"{ETH}", L"", MIB_IF_TYPE_ETHERNET, 4, 0, 0});
    Attach();
    EXPECT_TRUE(ReadSettingString(L"Adapter", read, 128 * sizeof(WCHAR)) && !lstrcmpW(L"{ETH}", read));
    EXPECT_STREQ(L"{ETH}", g_item.adapterName);
}

using ItemWindow = DeviceTest;

TEST_F(ItemWindow, OnlyAnEnabledItemGetsAChildWindowThatAsksForItsBackground)
{
    HWND item = CreateItem();
    tli_.fEnabled = FALSE;
    EXPECT_EQ(nullptr, InitializeCustomItem(&tli_, parent_));
    EXPECT_TRUE(GetParent(item) == parent_ && (GetWindowLongW(item, GWL_STYLE) & WS_CHILD));
    RECT rc;
    GetWindowRect(item, &rc);
    EXPECT_TRUE(rc.right - rc.left == 240 && rc.bottom == rc.top);
    SetWindowPos(item, nullptr, 0, 0, 240, 24, SWP_NOZORDER);
    HDC dc = GetDC(item);
    EXPECT_EQ(1, SendMessageW(item, WM_ERASEBKGND, (WPARAM)dc, 0));
    ReleaseDC(item, dc);
    EXPECT_TRUE(g_watermarkRequests == 1 && g_lastWatermark.hdc == dc && g_lastWatermark.hwnd == item);
    EXPECT_TRUE(g_lastWatermark.rc.right == 240 && g_lastWatermark.rc.bottom == 24);
    // While an item window lives the class cannot be registered again.
    EXPECT_FALSE(AttachModule(GetModuleHandleW(nullptr)));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    const fake::MessageBoxShown &shown = fake::g_device.messageBoxes[0];
    EXPECT_TRUE(shown.text == L"RegisterClass() failed" && shown.caption == L"Error! - quorvane.dll" &&
                (shown.type & MB_ICONEXCLAMATION));
}

TEST_F(ItemWindow, RefreshSetsTheHeightThenStartsOnce)
{
    const int screens[][5] = {{240, 320, 24, 44, 22}, {480, 640, 40, 88, 44}};   // screen, height, surface
    for (auto sc : screens) {
        fake::SetScreen(sc[0], sc[1]);
        Attach();
        HWND item = CreateItem();
        tli_.cyp = 0;
        EXPECT_EQ(TRUE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        EXPECT_TRUE(tli_.cyp == (UINT)sc[2] && !g_item.timerRunning && !g_item.gdiReady);
        EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        BITMAP bm = {};
        GetObjectW(g_item.surfaceBitmap, sizeof bm, &bm);
        EXPECT_TRUE(g_item.timerRunning && g_item.gdiReady && bm.bmWidth == sc[3] && bm.bmHeight == sc[4]) << bm.bmWidth;
        HDC surface = g_item.surfaceDC;
        // Timer 11 stopped behind the item's back: a refresh that set it
        // again (SetTimer with the same id only replaces it) would restart it.
        EXPECT_TRUE(KillTimer(item, SAMPLE_TIMER_ID));
        EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        EXPECT_EQ(surface, g_item.surfaceDC);                // made once
        EXPECT_FALSE(KillTimer(item, SAMPLE_TIMER_ID));
        DestroyWindow(parent_);                              // and the item with it
        item_ = parent_ = nullptr;
    }
}

TEST_F(ItemWindow, ClearCacheStopsAndFreesAndARefreshRestartsAll)
{
    HWND item = CreateItem();
    HPEN red = g_item.redPen;
    // Before the surface exists, the pens stay (the refresh only re-creates missing ones).
    SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, 0);
    EXPECT_TRUE(red == g_item.redPen && !g_item.taskbarBackground);
    tli_.cyp = 24;
    for (int round = 0; round < 2; round++) {
        EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        EXPECT_TRUE(g_item.timerRunning && g_item.gdiReady && g_item.redPen && g_item.bluePen && g_item.silverPen &&
                    g_item.taskbarBackground) << round;
        EXPECT_EQ(0, SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, (LPARAM)&tli_));
        EXPECT_FALSE(g_item.timerRunning || g_item.gdiReady || g_item.surfaceDC || g_item.surfaceBitmap ||
                     g_item.redPen || g_item.bluePen || g_item.silverPen || g_item.taskbarBackground) << round;
        EXPECT_FALSE(KillTimer(item, SAMPLE_TIMER_ID));
    }
}

TEST_F(ItemWindow, ShortOfGdiNothingIsHalfMadeAndAMissingPenDrawsNoLine)
{
    // The blue pen cannot be made at start-up: the received line is left out, not drawn in black.
    fake::FailCall(fake::kCreatePen, 2);
    Attach();
    ASSERT_TRUE(g_item.redPen && !g_item.bluePen);
    Canvas strip, surface;
    strip.Make(240, 24);
    surface.Make(44, 22);
    g_item.surfaceDC = surface.dc;
    g_item.gdiReady = true;
    g_item.sampleCount = 2;
    g_item.inDeltas[1] = 900000;
    g_item.outDeltas[1] = 5000;
    DrawStatusStrip(nullptr, strip.dc, false);
    std::vector<COLORREF> drawn = surface.Pixels();
    EXPECT_TRUE(std::count(drawn.begin(), drawn.end(), RGB(255, 0, 0)) > 0 && std::count(drawn.begin(), drawn.end(), 0) == 0);
    g_item.surfaceDC = nullptr;
    g_item.gdiReady = false;
    // The surface's DC is made but not its bitmap: the DC is deleted, not
    // kept or lost, nothing is drawn from its 1 x 1 default bitmap, and the
    // next refresh makes both; the missing pen is made again.
    HWND item = CreateItem();
    tli_.cyp = 24;
    fake::FailCall(fake::kCreateCompatibleBitmap, 1);
    fake::g_device.compatibleDCs.clear();
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    EXPECT_FALSE(g_item.gdiReady || g_item.surfaceDC || g_item.surfaceBitmap);
    for (HDC made : fake::g_device.compatibleDCs)
        EXPECT_EQ(0u, GetObjectType(made));
    EXPECT_TRUE(g_item.bluePen);
    PatBlt(strip.dc, 0, 0, 240, 24, WHITENESS);
    DrawStatusStrip(item, strip.dc, false);
    EXPECT_EQ(RGB(255, 255, 255), strip.At(20, 10));
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    EXPECT_TRUE(g_item.gdiReady);
}

TEST_F(ItemWindow, ClearCachePutsBackTheScreenCapturedAtStartUpOnlyWhenTheIconShows)
{
    const int cases[][2] = {{1, 1}, {1, 0}, {2, 1}};   // scale, icon shown
    for (auto c : cases) {
        int s = c[0];
        fake::SetScreen(240 * s, 320 * s);
        WriteSettingDword(L"TIcon", c[1]);
        Fill(fake::g_device.screenDC, 75, 5 * s, 75 + 16 * s, 21 * s, RGB(200, 10, 10));
        Attach();                                            // captures the clean square
        Fill(fake::g_device.screenDC, 75, 5 * s, 75 + 16 * s, 21 * s, RGB(0, 200, 0));
        ClearCache(nullptr);
        COLORREF want = c[1] ? RGB(200, 10, 10) : RGB(0, 200, 0);
        EXPECT_TRUE(fake::ScreenPixel(75, 5 * s) == want && fake::ScreenPixel(74 + 16 * s, 21 * s - 1) == want) << s << c[1];
        EXPECT_EQ(nullptr, g_item.taskbarBackground);
    }
}

TEST_F(ItemWindow, ToolDialogsAreCentredOneLargerAndSomeKeepBelowTheTaskbar)
{
    // Each tool on a screen only 10 pixels taller than it, in portrait and in
    // landscape: centred (top 5), below a taskbar counted 26 high when there
    // is none (top 26), or lifted 26 above the centre; one pixel larger but the export.
    const struct { int id; DLGPROC proc; int portrait, landscape, grow; } dialogs[] = {
        {IDD_USAGE, UsageDlgProc, 26, 26, 1},        {IDD_LIVEGRAPH, LiveGraphDlgProc, 5, 5, 1},
        {IDD_ADAPTER, AdapterDetailsDlgProc, 26, 26, 1}, {IDD_DHCP, DhcpDlgProc, 26, 26, 1},
        {IDD_SIGNAL, SignalViewDlgProc, 26, 26, 1},  {IDD_CARD, CardDetailsDlgProc, 26, 26, 1},
        {IDD_INTRUDER, IntruderDlgProc, 5, 26, 1},   {IDD_SCANNER, ScannerDlgProc, 5, 26, 1},
        {IDD_PING, PingDlgProc, 5 - 26, 5 - 26, 1},  {IDD_EXPORT, ExportDlgProc, 5, 5, 0}};
    auto placed = [](int id, DLGPROC proc) {
        HWND dialog = CreateFromTemplate(id, proc);
        RECT rc;
        GetWindowRect(dialog, &rc);
        DestroyWindow(dialog);
        return rc;
    };
    for (auto d : dialogs) {
        SIZE size = TemplateSize(d.id);
        int w = size.cx + d.grow, h = size.cy + d.grow;
        for (bool landscape : {false, true}) {
            fake::SetScreen(landscape ? h + 10 : h + 9, h + 10);
            IsLandscape();                                   // as the tap that opens it does
            RECT rc = placed(d.id, d.proc);
            EXPECT_TRUE(rc.right - rc.left == w && rc.bottom - rc.top == h && rc.left == (g_item.screenWidth - w) / 2 &&
                        rc.top == (landscape ? d.landscape : d.portrait))
                << "dialog " << d.id << (landscape ? " in landscape: " : " in portrait: ") << rc.left << "," << rc.top
                << " " << rc.right - rc.left << "x" << rc.bottom - rc.top;
        }
    }
    // With a taskbar window 60 high the top keeps to 61; the lifted ping dialog ignores it.
    fake::SetScreen(240, 320);
    fake::g_device.taskbar = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 240, 60, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(61, placed(IDD_USAGE, UsageDlgProc).top);
    EXPECT_EQ((320 - (int)TemplateSize(IDD_PING).cy - 1) / 2 - 26, placed(IDD_PING, PingDlgProc).top);
    DestroyWindow(fake::g_device.taskbar);
    fake::g_device.taskbar = nullptr;
}

} // namespace
