// support.cpp: the unit tests' shared set-up and their main.
#include "tests/support.h"

#include <commctrl.h>

#include <filesystem>

COLORREF g_watermarkColour = CLR_INVALID;

std::wstring TestRoot()
{
    return (std::filesystem::temp_directory_path() / (L"quorvane-unit-" + std::to_wstring(GetCurrentProcessId()))).wstring();
}

void DeleteTree(const std::wstring &path)
{
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::path(path), ignored);
}

void DeleteItemKey()
{
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, QUORVANE_KEY);
}

DWORD RegistryDword(LPCWSTR name, DWORD missing)
{
    DWORD v;
    return ReadSettingDword(name, &v) ? v : missing;
}

void Canvas::Make(int w, int h)
{
    Free();
    width = w;
    height = h;
    BITMAPINFO bi = {{sizeof(BITMAPINFOHEADER), w, -h, 1, 32}};
    void *bits = nullptr;
    dc = CreateCompatibleDC(nullptr);
    bitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    old = SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, w, h, WHITENESS);
}

void Canvas::Free()
{
    if (dc) {
        SelectObject(dc, old);
        DeleteDC(dc);
        DeleteObject(bitmap);
    }
    dc = nullptr;
    bitmap = nullptr;
}

std::vector<COLORREF> Pixels(HDC dc, int x0, int y0, int w, int h)
{
    std::vector<COLORREF> v;
    for (int y = y0; y < y0 + h; y++)
        for (int x = x0; x < x0 + w; x++)
            v.push_back(GetPixel(dc, x, y));
    return v;
}

void Fill(HDC dc, int left, int top, int right, int bottom, COLORREF colour)
{
    HBRUSH brush = CreateSolidBrush(colour);
    RECT rc = {left, top, right, bottom};
    FillRect(dc, &rc, brush);
    DeleteObject(brush);
}

std::vector<COLORREF> IconOver(COLORREF background, int id, int side)
{
    Canvas c;
    c.Make(side, side);
    Fill(c.dc, 0, 0, side, side, background);
    HICON icon = (HICON)LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON, side, side, 0);
    EXPECT_NE(nullptr, icon) << id;
    DrawIconEx(c.dc, 0, 0, icon, side, side, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
    return c.Pixels();
}

static LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != TODAYM_DRAWWATERMARK)
        return DefWindowProcW(window, message, wParam, lParam);
    const TODAYDRAWWATERMARKINFO &asked = *reinterpret_cast<TODAYDRAWWATERMARKINFO *>(lParam);
    if (g_watermarkColour != CLR_INVALID)
        Fill(asked.hdc, asked.rc.left, asked.rc.top, asked.rc.right, asked.rc.bottom, g_watermarkColour);
    return 1;
}

HWND CreateParentWindow()
{
    static WNDCLASSW wc = {0, ParentProc, 0, 0, GetModuleHandleW(nullptr), nullptr, nullptr, nullptr, nullptr,
                           L"QuorvaneTestParent"};
    [[maybe_unused]] static ATOM registered = RegisterClassW(&wc);
    g_watermarkColour = CLR_INVALID;
    return CreateWindowExW(0, wc.lpszClassName, L"parent", WS_POPUP, 0, 0, 480, 640, nullptr, nullptr, wc.hInstance,
                           nullptr);
}

void DeviceTest::SetUp()
{
    DeleteTree(TestRoot());
    fake::Reset(TestRoot());
    DeleteItemKey();
    Attach();
}

void DeviceTest::Attach()
{
    // Start-up owns these handles; a second start-up in one test must not
    // leak them, nor paint the old background over what the test drew.
    if (g_item.instance) {
        g_item.showTaskbarIcon = false;
        ClearCache(item_);
    }
    ASSERT_TRUE(AttachModule(GetModuleHandleW(nullptr)));
}

HWND DeviceTest::CreateItem(bool enabled)
{
    parent_ = CreateParentWindow();
    tli_ = TODAYLISTITEM();
    lstrcpyW(tli_.szName, L"Quorvane");
    tli_.tlit = tlitCustom;
    tli_.fEnabled = enabled;
    return item_ = InitializeCustomItem(&tli_, parent_);
}

void DeviceTest::TearDown()
{
    ClearCache(item_);
    DestroyWindow(item_);
    DestroyWindow(parent_);
    item_ = parent_ = nullptr;
    DetachModule();
    DeleteItemKey();
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    int rc = RUN_ALL_TESTS();
    DeleteTree(TestRoot());
    return rc;
}

LPCDLGTEMPLATE DialogTemplate(int id)
{
    HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), RT_DIALOG);
    EXPECT_NE(nullptr, found) << "dialog template " << id;
    return found ? static_cast<LPCDLGTEMPLATE>(LockResource(LoadResource(nullptr, found))) : nullptr;
}

HWND CreateFromTemplate(int id, DLGPROC proc)
{
    HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(id), nullptr, proc, 0);
    EXPECT_NE(nullptr, dialog) << "dialog " << id;
    return dialog;
}

Texts ControlTexts(HWND dialog, std::initializer_list<int> ids)
{
    Texts texts;
    WCHAR text[256];
    for (int id : ids)
        texts.push_back(GetDlgItemTextW(dialog, id, text, 256) ? text : L"");
    return texts;
}

SIZE TemplateSize(int id)
{
    HWND plain = CreateFromTemplate(id, [](HWND, UINT m, WPARAM, LPARAM) -> INT_PTR { return m == WM_INITDIALOG; });
    RECT rc = {};
    GetWindowRect(plain, &rc);
    DestroyWindow(plain);
    return {rc.right - rc.left, rc.bottom - rc.top};
}

static DLGPROC g_modalProc;
static void (*g_modalScript)(HWND);

INT_PTR RunModal(int id, DLGPROC proc, void (*script)(HWND))
{
    g_modalProc = proc;
    g_modalScript = script;
    auto scripted = [](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
        const UINT_PTR guard = 0x7E57;
        if (message == WM_INITDIALOG) {
            PostMessageW(dialog, WM_APP, 0, 0);
            SetTimer(dialog, guard, 5000, nullptr);
        } else if (message == WM_APP) {
            g_modalScript(dialog);
            return TRUE;
        } else if (message == WM_TIMER && wParam == guard) {
            EndDialog(dialog, -5);
            return TRUE;
        }
        return g_modalProc(dialog, message, wParam, lParam);
    };
    return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(id), nullptr, scripted, 0);
}

void SendDateChange(HWND dialog, int id, int year, int month, int day, bool valid)
{
    NMDATETIMECHANGE change = {{GetDlgItem(dialog, id), (UINT_PTR)id, (UINT)DTN_DATETIMECHANGE}, (DWORD)(valid ? GDT_VALID : GDT_NONE)};
    change.st = {(WORD)year, (WORD)month, 0, (WORD)day};
    SendMessageW(dialog, WM_NOTIFY, id, (LPARAM)&change);
}
