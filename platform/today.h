// today.h: the Today screen's plug-in interface, as its SDK header spells it.
#pragma once

#include <windows.h>

#define MAX_ITEMNAME 32

// The Today screen's messages to an item window, and the item's one request.
#define WM_TODAYCUSTOM_CLEARCACHE        (WM_USER + 242)   // 1266
#define WM_TODAYCUSTOM_QUERYREFRESHCACHE (WM_USER + 243)   // 1267
#define TODAYM_DRAWWATERMARK             (WM_USER + 101)   // 1125

enum TODAYLISTITEMTYPE {
    tlitOwnerInfo = 0,
    tlitAppointments,
    tlitMail,
    tlitTasks,
    tlitCustom,
    tlitNil
};

struct TODAYLISTITEM {
    WCHAR szName[MAX_ITEMNAME];
    TODAYLISTITEMTYPE tlit;
    DWORD dwOrder;
    DWORD cyp;
    BOOL fEnabled;
    BOOL fOptions;
    DWORD grfFlags;
    WCHAR szDLLPath[MAX_PATH];
    HINSTANCE hinstDLL;
    HWND hwndCustom;
    BOOL fSizeOnDraw;
    BYTE *prgbCachedData;
    DWORD cbCachedData;
};

struct TODAYDRAWWATERMARKINFO {
    HDC hdc;
    RECT rc;
    HWND hwnd;
};

// Export ordinals the Today screen calls by number.
#define ORDINAL_INITIALIZECUSTOMITEM 240
#define ORDINAL_CUSTOMITEMOPTIONSDLGPROC 241

typedef HWND (WINAPI *PFNCUSTOMINITITEM)(TODAYLISTITEM *, HWND);
