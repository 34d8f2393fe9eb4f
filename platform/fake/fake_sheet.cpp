// fake_sheet.cpp: full-screen dialogs and property sheets that only remember what they were given.
#include "platform/fake/fake_sheet.h"

namespace fake {

Sheets g_sheets;

void ResetSheets()
{
    g_sheets = Sheets();
    g_sheets.answer = 1;
}

} // namespace fake

namespace platform {

BOOL SHInitDialog(PSHINITDLGINFO info)
{
    fake::g_sheets.initDialogFlags.push_back(info->dwFlags);
    return TRUE;
}

INT_PTR PropertySheetW(LPCPROPSHEETHEADERW header)
{
    fake::SheetRun run;
    run.flags = header->dwFlags;
    run.owner = header->hwndParent;
    run.instance = header->hInstance;
    run.caption = header->pszCaption ? header->pszCaption : L"";
    run.startPage = header->nStartPage;
    run.callback = header->pfnCallback;
    for (UINT i = 0; i < header->nPages && (header->dwFlags & PSH_PROPSHEETPAGE); i++) {
        const PROPSHEETPAGEW &p = header->ppsp[i];
        fake::SheetPage page;
        page.flags = p.dwFlags;
        page.templateId = IS_INTRESOURCE(p.pszTemplate) ? (int)(ULONG_PTR)p.pszTemplate : 0;
        page.title = (p.dwFlags & PSP_USETITLE) && p.pszTitle ? p.pszTitle : L"";
        page.proc = p.pfnDlgProc;
        run.pages.push_back(page);
    }
    fake::g_sheets.runs.push_back(run);
    return fake::g_sheets.answer;
}

void DestroyPropertySheet(HWND sheet)
{
    fake::g_sheets.destroyed.push_back(sheet);
}

} // namespace platform
