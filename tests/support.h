// support.h: what the unit tests share: a fresh fake device, a clean item key, test windows.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "item/item.h"
#include "platform/fake/fake.h"

// A folder of this test's own, emptied at every reset.
std::wstring TestRoot();
void DeleteTree(const std::wstring &path);
void DeleteItemKey();
DWORD RegistryDword(LPCWSTR name, DWORD missing = 0xDEADBEEF);

// The pixels of a w x h block of `dc` at (x, y), row by row; a rectangle filled in one colour.
std::vector<COLORREF> Pixels(HDC dc, int x, int y, int w, int h);
void Fill(HDC dc, int left, int top, int right, int bottom, COLORREF colour);

// A memory DC over a 32-bit DIB, white, owned by the test: where drawing is
// checked by its pixels.
struct Canvas {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ old = nullptr;
    int width = 0, height = 0;

    ~Canvas() { Free(); }
    void Make(int w, int h);   // a canvas made before is freed first
    void Free();
    COLORREF At(int x, int y) const { return GetPixel(dc, x, y); }
    std::vector<COLORREF> Pixels() const { return ::Pixels(dc, 0, 0, width, height); }
};

// A plain parent window; when g_watermarkColour is set, it paints the
// watermark it is asked for in that colour.
HWND CreateParentWindow();
extern COLORREF g_watermarkColour;

// Every test on the device starts from a new device, a clean key and an item
// state freshly initialised from it, as the module's attach leaves it.
class DeviceTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // Runs the start-up again, after the test has set the device and registry.
    void Attach();
    // The item window under a fresh parent, with the host's list item.
    HWND CreateItem(bool enabled = true);

    HWND parent_ = nullptr;
    HWND item_ = nullptr;
    TODAYLISTITEM tli_ = {};
};

// What icon `id` of `side` pixels looks like drawn once over `background`.
std::vector<COLORREF> IconOver(COLORREF background, int id, int side);

// Dialogs built from the templates linked into the test executable.
LPCDLGTEMPLATE DialogTemplate(int id);
HWND CreateFromTemplate(int id, DLGPROC proc);
// The texts of controls `ids` of `dialog`, in that order ("" for one with none).
typedef std::vector<std::wstring> Texts;
Texts ControlTexts(HWND dialog, std::initializer_list<int> ids);
// The window size a template gives when no dialog procedure moves or sizes it.
SIZE TemplateSize(int id);
// Runs template `id` modally under `proc`; once it is up, `script` acts on it
// and must end it, or it is ended with -5 after 5 s.
INT_PTR RunModal(int id, DLGPROC proc, void (*script)(HWND dialog));
// A date picker's change notification, sent to its dialog as the control would.
void SendDateChange(HWND dialog, int id, int year, int month, int day, bool valid = true);
