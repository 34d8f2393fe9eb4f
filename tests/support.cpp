// support.cpp: the unit tests' shared set-up and their main.
#include "tests/support.h"

#include <commctrl.h>
#include <stdio.h>

int g_watermarkRequests;
COLORREF g_watermarkColour = CLR_INVALID;
TODAYDRAWWATERMARKINFO g_lastWatermark;

std::wstring TestRoot()
{
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    wchar_t root[MAX_PATH];
    swprintf(root, MAX_PATH, L"%squorvane-unit-%lu", temp, GetCurrentProcessId());
    return root;
}

void DeleteTree(const std::wstring &path)
{
    WIN32_FIND_DATAW fd;
    HANDLE find = FindFirstFileW((path + L"\\*").c_str(), &fd);
    if (find != INVALID_HANDLE_VALUE) {
        do {
            std::wstring name = fd.cFileName;
            if (name == L"." || name == L"..")
                continue;
            std::wstring child = path + L"\\" + name;
            if (fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                DeleteTree(child);
            else
                DeleteFileW(child.c_str());
        } while (FindNextFileW(find, &fd));
        FindClose(find);
    }
    RemoveDirectoryW(path.c_str());
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
    width = w;
    height = h;
    BITMAPINFO bi = {};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    dc = CreateCompatibleDC(nullptr);
    bitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    old = SelectObject(dc, bitmap);
    RECT rc = {0, 0, w, h};
    FillRect(dc, &rc, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
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

std::vector<COLORREF> Canvas::Pixels() const
{
    std::vector<COLORREF> v;
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++)
            v.push_back(At(x, y));
    return v;
}

std::vector<COLORREF> Canvas::Square(int x0, int y0, int side) const
{
    std::vector<COLORREF> v;
    for (int y = y0; y < y0 + side; y++)
        for (int x = x0; x < x0 + side; x++)
            v.push_back(At(x, y));
    return v;
}

std::vector<COLORREF> IconOver(COLORREF background, int id, int side)
{
    Canvas c;
    c.Make(side, side);
    HBRUSH brush = CreateSolidBrush(background);
    RECT rc = {0, 0, side, side};
    FillRect(c.dc, &rc, brush);
    DeleteObject(brush);
    HICON icon = (HICON)LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON, side, side, 0);
    EXPECT_NE(nullptr, icon) << id;
    DrawIconEx(c.dc, 0, 0, icon, side, side, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
    std::vector<COLORREF> v = c.Pixels();
    c.Free();
    return v;
}

static LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == TODAYM_DRAWWATERMARK) {
        g_watermarkRequests++;
        g_lastWatermark = *reinterpret_cast<TODAYDRAWWATERMARKINFO *>(lParam);
        if (g_watermarkColour != CLR_INVALID) {
            HBRUSH brush = CreateSolidBrush(g_watermarkColour);
            FillRect(g_lastWatermark.hdc, &g_lastWatermark.rc, brush);
            DeleteObject(brush);
        }
        return 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND CreateParentWindow()
{
    static bool registered;
    if (!registered) {
        WNDCLASSW wc = {};
        wc.lpfnWndProc = ParentProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = L"QuorvaneTestParent";
        RegisterClassW(&wc);
        registered = true;
    }
    g_watermarkRequests = 0;
    g_watermarkColour = CLR_INVALID;
    return CreateWindowExW(0, L"QuorvaneTestParent", L"parent", WS_POPUP, 0, 0, 480, 640, nullptr,
                           nullptr, GetModuleHandleW(nullptr), nullptr);
}

void DeviceTest::SetUp()
{
    std::wstring root = TestRoot();
    DeleteTree(root);
    fake::Reset(root);
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
    item_ = InitializeCustomItem(&tli_, parent_);
    return item_;
}

void DeviceTest::TearDown()
{
    if (item_) {
        ClearCache(item_);
        DestroyWindow(item_);
    } else {
        ClearCache(nullptr);
    }
    if (parent_)
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
    HINSTANCE instance = GetModuleHandleW(nullptr);
    HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(id), RT_DIALOG);
    EXPECT_NE(nullptr, found) << "dialog template " << id;
    return found ? static_cast<LPCDLGTEMPLATE>(LockResource(LoadResource(instance, found))) : nullptr;
}

HWND CreateFromTemplate(int id, DLGPROC proc)
{
    HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), DialogTemplate(id), nullptr, proc, 0);
    EXPECT_NE(nullptr, dialog) << "dialog " << id;
    return dialog;
}

SIZE TemplateSize(int id)
{
    HWND plain = CreateFromTemplate(id, [](HWND, UINT m, WPARAM, LPARAM) -> INT_PTR { return m == WM_INITDIALOG; });
    RECT rc = {};
    GetWindowRect(plain, &rc);
    DestroyWindow(plain);
    return {rc.right - rc.left, rc.bottom - rc.top};
}

void SendDateChange(HWND dialog, int id, int year, int month, int day, bool valid)
{
    NMDATETIMECHANGE change = {};
    change.nmhdr.hwndFrom = GetDlgItem(dialog, id);
    change.nmhdr.idFrom = id;
    change.nmhdr.code = DTN_DATETIMECHANGE;
    change.dwFlags = valid ? GDT_VALID : GDT_NONE;
    change.st.wYear = (WORD)year;
    change.st.wMonth = (WORD)month;
    change.st.wDay = (WORD)day;
    SendMessageW(dialog, WM_NOTIFY, id, (LPARAM)&change);
}
