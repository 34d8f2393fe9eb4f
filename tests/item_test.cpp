// item_test.cpp: start-up, settings and the Today screen's cache messages.
#include "tests/support.h"
#include "charts/charts.h"
#include "resources/resource.h"
#include "wireless/wireless.h"

namespace {

using ItemStartup = DeviceTest;

TEST_F(ItemStartup, StoredValuesAreClampedOrReadAsFlagsAndAWrongTypeIsTheDefault)
{
    // The defaults and the default log folder are seen end to end.
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
    WriteSettingString(L"Adapter", L"PCI\\NE20001");   // InstallDir is set and used end to end
    Attach();
    EXPECT_STREQ(L"PCI\\NE20001", g_item.adapterName);
    EXPECT_EQ(UNKNOWN_INTERFACE, g_item.interfaceIndex);     // the first tick resolves it again
    // Stored without its end, 128 characters fill a 128-character buffer:
    // the last gives way to the end. (Another character follows them, or
    // the registry would add the end when the value is set.)
    ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_LOCAL_MACHINE, QUORVANE_KEY, L"Adapter", REG_SZ,
                                             std::wstring(129, L'a').c_str(), 128 * sizeof(WCHAR)));
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

TEST_F(ItemWindow, RefreshSetsTheHeightThenStartsOnceAndClearCacheFreesAll)
{
    const int screens[][5] = {{240, 320, 24, 44, 22}, {480, 640, 40, 88, 44}};   // screen, height, surface
    for (auto sc : screens) {
        fake::SetScreen(sc[0], sc[1]);
        Attach();
        HWND item = CreateItem();
        HPEN red = g_item.redPen;
        SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, 0);   // before the surface exists, the pens stay
        EXPECT_EQ(red, g_item.redPen);
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
        // Clear-cache stops the timer and frees all; a refresh makes all again.
        for (int round = 0; round < 2; round++) {
            EXPECT_EQ(0, SendMessageW(item, WM_TODAYCUSTOM_CLEARCACHE, 0, (LPARAM)&tli_));
            EXPECT_FALSE(g_item.timerRunning || g_item.gdiReady || g_item.surfaceDC || g_item.surfaceBitmap ||
                         g_item.redPen || g_item.bluePen || g_item.silverPen || g_item.taskbarBackground ||
                         KillTimer(item, SAMPLE_TIMER_ID)) << round;
            SendMessageW(item, WM_TODAYCUSTOM_QUERYREFRESHCACHE, 0, (LPARAM)&tli_);
            EXPECT_TRUE(g_item.timerRunning && g_item.gdiReady && g_item.redPen && g_item.bluePen && g_item.silverPen &&
                        g_item.taskbarBackground) << round;
        }
        DestroyWindow(parent_);                              // and the item with it
        item_ = parent_ = nullptr;
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

TEST_F(ItemWindow, ToolDialogsAreCentredOneLargerAndKeptBelowTheTaskbarIfAsked)
{
    auto placed = [](int id, DLGPROC proc) {
        HWND dialog = CreateFromTemplate(id, proc);
        RECT rc;
        GetWindowRect(dialog, &rc);
        DestroyWindow(dialog);
        return rc;
    };
    // Centred at 25 and 27: the usage dialog keeps to 26 (the taskbar's
    // height when it has no window), the live graph does not.
    const struct { int id; DLGPROC proc; int top; } dialogs[] = {{IDD_USAGE, UsageDlgProc, 26},
                                                                 {IDD_LIVEGRAPH, LiveGraphDlgProc, 0}};
    for (auto d : dialogs) {
        SIZE size = TemplateSize(d.id);
        int w = size.cx + 1, h = size.cy + 1;
        for (int centred : {25, 27}) {
            fake::SetScreen(w + 9, h + 2 * centred);
            RECT rc = placed(d.id, d.proc);
            EXPECT_TRUE(rc.left == 4 && rc.right - rc.left == w && rc.bottom - rc.top == h && rc.top == std::max(d.top, centred))
                << d.id << " centred at " << centred << ": " << rc.left << "," << rc.top << " " << rc.right - rc.left;
        }
    }
    // With a taskbar window 60 high the top keeps to 61.
    fake::SetScreen(240, 320);
    fake::g_device.taskbar = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 240, 60, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(61, placed(IDD_USAGE, UsageDlgProc).top);
    DestroyWindow(fake::g_device.taskbar);
    fake::g_device.taskbar = nullptr;
}

} // namespace
