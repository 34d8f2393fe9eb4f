// sheet.h: the handheld shell's full-screen dialogs and property sheets, behind the platform door.
#pragma once

#include <windows.h>
#include <commctrl.h>

#ifdef _WIN32_WCE
#include <aygshell.h>
#else
// The device shell's dialog set-up, as its SDK declares it.
typedef struct tagSHINITDLGINFO {
    DWORD dwMask;
    HWND hDlg;
    DWORD dwFlags;
} SHINITDLGINFO, *PSHINITDLGINFO;
#define SHIDIM_FLAGS             0x0001
#define SHIDIF_DONEBUTTON        0x0001
#define SHIDIF_SIZEDLG           0x0002
#define SHIDIF_SIZEDLGFULLSCREEN 0x0004
#define SHIDIF_SIPDOWN           0x0008
#endif

// The device's property sheet: a sheet over the whole screen, and the
// callback's question for the look it is to have. Desktop comctl32 reads the
// same flag bit as its wizard flag, so only the device ever sees it.
#ifndef PSH_MAXIMIZE
#define PSH_MAXIMIZE 0x2000
#endif
#ifndef PSCB_GETVERSION
#define PSCB_GETVERSION 0x80
#endif

namespace platform {

BOOL SHInitDialog(PSHINITDLGINFO info);
// Runs a modal property sheet; its result as the platform gives it.
INT_PTR PropertySheetW(LPCPROPSHEETHEADERW header);
// Ends a sheet from a page's PSN_APPLY: the device's sheet is destroyed
// there; a desktop sheet ends itself once its pages have applied.
void DestroyPropertySheet(HWND sheet);

} // namespace platform
