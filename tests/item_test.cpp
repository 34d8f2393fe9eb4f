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

TEST_F(ItemStartup, StartValuesAndDefaultsWrittenBack)
{
    EXPECT_EQ(75u, RegistryDword(L"XLocation"));
    EXPECT_EQ(1u, RegistryDword(L"TIcon"));
    EXPECT_EQ(1u, RegistryDword(L"TFormat"));
    EXPECT_TRUE(g_item.xLocation == 75 && g_item.showTaskbarIcon && g_item.amPmFormat);
    EXPECT_TRUE(g_item.redPen && g_item.bluePen && g_item.silverPen && g_item.taskbarBackground);
    // No adapter on this device: the name stays empty and is not stored.
    WCHAR stored[260];
    EXPECT_STREQ(L"", g_item.adapterName);
    EXPECT_FALSE(ReadSettingString(L"Adapter", stored, sizeof stored));
    // The log folder defaults under Program Files, is created, and is not stored.
    std::wstring folder = fake::g_device.programFiles + L"\\Ostrik\\Quorvane";
    EXPECT_STREQ(folder.c_str(), g_item.dataFolder);
    DWORD attributes = GetFileAttributesW(folder.c_str());
    EXPECT_TRUE(attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY));
    EXPECT_FALSE(ReadSettingString(L"InstallDir", stored, sizeof stored));

    // Start-up forgets a wireless adapter that was leaving.
    WirelessLostValue = 1234;
    g_item.signalTiming = true;
    Attach();
    EXPECT_EQ(0xFFFFFFFFu, WirelessLostValue);
    EXPECT_FALSE(g_item.signalTiming);
}

TEST_F(ItemStartup, StoredNumbersAreClampedOrReadAsFlags)
{
    // XLocation above 639 is clamped and written back; the flags count any
    // non-zero value as set and are left as stored.
    struct {
        LPCWSTR name;
        DWORD stored, used, written;
    } cases[] = {
        {L"XLocation", 639, 639, 639}, {L"XLocation", 640, 639, 639}, {L"XLocation", 0xFFFFFFFF, 639, 639},
        {L"XLocation", 0, 0, 0},       {L"TFormat", 7, 1, 7},          {L"TFormat", 0, 0, 0},
        {L"TIcon", 0, 0, 0},           {L"TIcon", 2, 1, 2},
    };
    for (auto c : cases) {
        WriteSettingDword(c.name, c.stored);
        Attach();
        DWORD used = !lstrcmpW(c.name, L"XLocation") ? g_item.xLocation
                     : !lstrcmpW(c.name, L"TIcon")   ? g_item.showTaskbarIcon
                                                     : g_item.amPmFormat;
        EXPECT_EQ(c.used, used) << c.name << " " << c.stored;
        EXPECT_EQ(c.written, RegistryDword(c.name)) << c.name << " " << c.stored;
    }
    // A value of the wrong type counts as absent.
    WriteSettingString(L"XLocation", L"100");
    Attach();
    EXPECT_EQ(75u, g_item.xLocation);
    EXPECT_EQ(75u, RegistryDword(L"XLocation"));
}

TEST_F(ItemStartup, StoredStringsAreUsedAndATooLongNameIsChosenAgain)
{
    WriteSettingString(L"InstallDir", L"\\Storage Card\\Logs");
    WriteSettingString(L"Adapter", L"PCI\\NE20001");
    Attach();
    EXPECT_STREQ(L"\\Storage Card\\Logs", g_item.dataFolder);
    EXPECT_STREQ(L"PCI\\NE20001", g_item.adapterName);
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);     // the first tick resolves it again

    // A name longer than the buffer cannot be read at all: it counts as
    // absent, so the adapter is chosen and stored again.
    WCHAR read[128];
    WriteSettingString(L"Adapter", std::wstring(299, L'a').c_str());
    fake::g_device.adapters.push_back({"{ETH}", L"", MIB_IF_TYPE_ETHERNET, 4, 0, 0});
    Attach();
    EXPECT_STREQ(L"{ETH}", g_item.adapterName);
    EXPECT_TRUE(ReadSettingString(L"Adapter", read, 256));
    EXPECT_STREQ(L"{ETH}", read);
}

TEST_F(ItemStartup, NoScreenMeansNoSnapshotAndNoCrash)
{
    EXPECT_EQ(0, fake::g_device.screenDCsOut);
    fake::FailCall(fake::kGetDC, 1, true);
    Attach();
    EXPECT_EQ(nullptr, g_item.taskbarBackground);
}

TEST_F(ItemStartup, FailedClassRegistrationIsReported)
{
    // While an item window lives the class cannot be registered again.
    ASSERT_NE(nullptr, CreateItem());
    EXPECT_FALSE(AttachModule(GetModuleHandleW(nullptr)));
    ASSERT_EQ(1u, fake::g_device.messageBoxes.size());
    EXPECT_EQ(L"RegisterClass() failed", fake::g_device.messageBoxes[0].text);
    EXPECT_EQ(L"Error! - quorvane.dll", fake::g_device.messageBoxes[0].caption);
    EXPECT_TRUE(fake::g_device.messageBoxes[0].type & MB_ICONEXCLAMATION);
}

using ItemWindow = DeviceTest;

TEST_F(ItemWindow, OnlyAnEnabledItemGetsAChildWindow)
{
    HWND item = CreateItem();
    ASSERT_NE(nullptr, item);
    tli_.fEnabled = FALSE;
    EXPECT_EQ(nullptr, InitializeCustomItem(&tli_, parent_));
    EXPECT_EQ(parent_, GetParent(item));
    EXPECT_TRUE(GetWindowLongW(item, GWL_STYLE) & WS_CHILD);
    RECT rc;
    GetWindowRect(item, &rc);
    EXPECT_TRUE(rc.right - rc.left == 240 && rc.bottom == rc.top);
}

TEST_F(ItemWindow, RefreshSetsTheHeightThenStartsOnce)
{
    struct {
        int w, h;
        UINT cyp;
        int surfaceW, surfaceH;
    } screens[] = {{240, 320, 24, 44, 22}, {480, 640, 40, 88, 44}};
    for (auto sc : screens) {
        fake::SetScreen(sc.w, sc.h);
        Attach();
        HWND item = CreateItem();
        tli_.cyp = 0;
        EXPECT_EQ(TRUE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        EXPECT_EQ(sc.cyp, tli_.cyp);
        EXPECT_FALSE(g_item.timerRunning || g_item.gdiReady);

        EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
        EXPECT_TRUE(g_item.timerRunning);
        ASSERT_TRUE(g_item.gdiReady);
        BITMAP bm;
        ASSERT_TRUE(GetObjectW(g_item.surfaceBitmap, sizeof bm, &bm));
        EXPECT_TRUE(bm.bmWidth == sc.surfaceW && bm.bmHeight == sc.surfaceH) << bm.bmWidth << "x" << bm.bmHeight;
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
    EXPECT_EQ(red, g_item.redPen);
    EXPECT_EQ(nullptr, g_item.taskbarBackground);

    tli_.cyp = 24;
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    ASSERT_TRUE(g_item.timerRunning && g_item.gdiReady && g_item.taskbarBackground);
    EXPECT_EQ(0, SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, (LPARAM)&tli_));
    EXPECT_FALSE(g_item.timerRunning || g_item.gdiReady);
    EXPECT_FALSE(g_item.surfaceDC || g_item.surfaceBitmap || g_item.redPen || g_item.bluePen ||
                 g_item.silverPen || g_item.taskbarBackground);
    EXPECT_FALSE(KillTimer(item, SAMPLE_TIMER_ID));

    EXPECT_EQ(FALSE, SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_));
    EXPECT_TRUE(g_item.timerRunning && g_item.gdiReady);
    EXPECT_TRUE(g_item.redPen && g_item.bluePen && g_item.silverPen && g_item.taskbarBackground);
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
    int red = 0, black = 0;
    for (COLORREF c : surface.Pixels())
        red += c == RGB(255, 0, 0), black += c == 0;
    EXPECT_GT(red, 0);
    EXPECT_EQ(0, black);
    g_item.surfaceDC = nullptr;
    g_item.gdiReady = false;

    // The surface's bitmap cannot be made: its DC goes too, and no graph is
    // drawn; the missing pen is made again.
    HWND item = CreateItem();
    tli_.cyp = 24;
    fake::FailCall(fake::kCreateCompatibleBitmap, 1);
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    EXPECT_FALSE(g_item.gdiReady || g_item.surfaceDC || g_item.surfaceBitmap);
    EXPECT_TRUE(g_item.bluePen);
    PatBlt(strip.dc, 0, 0, 240, 24, WHITENESS);
    DrawStatusStrip(item, strip.dc, false);
    EXPECT_EQ(RGB(255, 255, 255), strip.At(20, 10));
    SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
    EXPECT_TRUE(g_item.gdiReady);
    surface.Free();
    strip.Free();
}

// Paints the square under the taskbar icon on the device screen.
void PaintUnderIcon(COLORREF colour, int s)
{
    HBRUSH brush = CreateSolidBrush(colour);
    RECT square = {75, 5 * s, 75 + 16 * s, 21 * s};
    FillRect(fake::g_device.screenDC, &square, brush);
    DeleteObject(brush);
}

TEST_F(ItemWindow, ClearCachePutsBackTheScreenCapturedAtStartUpOnlyWhenTheIconShows)
{
    const COLORREF clean = RGB(200, 10, 10), icon = RGB(0, 200, 0);
    struct {
        int s;
        DWORD shown;
    } cases[] = {{1, 1}, {1, 0}, {2, 1}};
    for (auto c : cases) {
        fake::SetScreen(240 * c.s, 320 * c.s);
        WriteSettingDword(L"TIcon", c.shown);
        PaintUnderIcon(clean, c.s);
        Attach();                                            // captures the clean square
        PaintUnderIcon(icon, c.s);
        ClearCache(nullptr);
        COLORREF want = c.shown ? clean : icon;
        EXPECT_EQ(want, fake::ScreenPixel(75, 5 * c.s)) << c.s << " " << c.shown;
        EXPECT_EQ(want, fake::ScreenPixel(74 + 16 * c.s, 21 * c.s - 1)) << c.s << " " << c.shown;
        EXPECT_EQ(nullptr, g_item.taskbarBackground);
    }
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
    EXPECT_TRUE(g_lastWatermark.rc.right == 240 && g_lastWatermark.rc.bottom == 24);
}

TEST_F(ItemWindow, ToolDialogsAreCentredOneLargerAndSomeKeepBelowTheTaskbar)
{
    // Where each tool puts itself on a screen only 10 pixels taller than it,
    // in portrait and in landscape: centred (top 5), below a taskbar counted
    // 26 high when there is none (top 26), or lifted 26 above the centre.
    enum { kCentred, kBelow, kBelowInLandscape, kLifted, kExactSize };
    const struct { int id; DLGPROC proc; int rule; } dialogs[] = {
        {IDD_USAGE, UsageDlgProc, kBelow},           {IDD_LIVEGRAPH, LiveGraphDlgProc, kCentred},
        {IDD_ADAPTER, AdapterDetailsDlgProc, kBelow}, {IDD_DHCP, DhcpDlgProc, kBelow},
        {IDD_SIGNAL, SignalViewDlgProc, kBelow},     {IDD_CARD, CardDetailsDlgProc, kBelow},
        {IDD_INTRUDER, IntruderDlgProc, kBelowInLandscape}, {IDD_SCANNER, ScannerDlgProc, kBelowInLandscape},
        {IDD_PING, PingDlgProc, kLifted},            {IDD_EXPORT, ExportDlgProc, kExactSize},
    };
    for (auto d : dialogs) {
        SIZE size = TemplateSize(d.id);
        int grow = d.rule == kExactSize ? 0 : 1, w = size.cx + grow, h = size.cy + grow;
        for (bool landscape : {false, true}) {
            int screenH = h + 10, screenW = landscape ? screenH : screenH - 1;
            fake::SetScreen(screenW, screenH);
            IsLandscape();                                   // as the tap that opens it does
            HWND dialog = CreateFromTemplate(d.id, d.proc);
            RECT rc;
            GetWindowRect(dialog, &rc);
            DestroyWindow(dialog);
            int top = d.rule == kBelow || (d.rule == kBelowInLandscape && landscape) ? 26 : d.rule == kLifted ? 5 - 26 : 5;
            SCOPED_TRACE(testing::Message() << "dialog " << d.id << (landscape ? " in landscape" : " in portrait"));
            EXPECT_EQ(w, rc.right - rc.left);
            EXPECT_EQ(h, rc.bottom - rc.top);
            EXPECT_EQ((screenW - w) / 2, rc.left);
            EXPECT_EQ(top, rc.top);
        }
    }
    // With a taskbar window 60 high the top keeps to 61; the lifted ping dialog ignores it.
    fake::SetScreen(240, 320);
    HWND taskbar = fake::g_device.taskbar =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 240, 60, nullptr, nullptr, nullptr, nullptr);
    const struct { int id; DLGPROC proc; int top; } tall[] = {
        {IDD_USAGE, UsageDlgProc, 61}, {IDD_PING, PingDlgProc, (320 - (int)TemplateSize(IDD_PING).cy - 1) / 2 - 26}};
    for (auto d : tall) {
        HWND dialog = CreateFromTemplate(d.id, d.proc);
        RECT rc;
        GetWindowRect(dialog, &rc);
        DestroyWindow(dialog);
        EXPECT_EQ(d.top, rc.top) << d.id;
    }
    DestroyWindow(taskbar);
    fake::g_device.taskbar = nullptr;
}

} // namespace
