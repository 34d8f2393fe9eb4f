// fake_sheet.h: what the fake device's shell and property sheets were asked to do.
#pragma once

#include "platform/sheet.h"

#include <string>
#include <vector>

namespace fake {

struct SheetPage {
    DWORD flags;
    int templateId;            // the page's template, when given by number
    std::wstring title;
    DLGPROC proc;
};

struct SheetRun {
    DWORD flags;
    HWND owner;
    HINSTANCE instance;
    std::wstring caption;
    UINT startPage;
    std::vector<SheetPage> pages;
    PFNPROPSHEETCALLBACK callback;
};

struct Sheets {
    std::vector<DWORD> initDialogFlags;   // SHInitDialog's flags, one per call
    std::vector<SheetRun> runs;           // sheets are recorded, not shown
    INT_PTR answer;                       // what a sheet run returns
    std::vector<HWND> destroyed;          // DestroyPropertySheet's windows
};

extern Sheets g_sheets;

// Forgets everything (fake::Reset calls it).
void ResetSheets();

} // namespace fake
