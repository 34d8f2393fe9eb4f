// dialog_win32.cpp: modal dialogs on a desktop that plays the device: its screen origin and its 192 dpi.
#ifndef _WIN32_WCE
#include "platform/win32/dialog_win32.h"

#include <stdlib.h>
#include <string.h>

namespace {

const WCHAR kProcProperty[] = L"QuorvaneDeviceDialogProc";

// The dialog being created; its procedure is attached to the window at the
// first message, before WM_INITDIALOG. Dialogs run on the one user-interface
// thread; plain globals, as thread_local would link a threads library (20 KB)
// into the DLL.
DLGPROC t_pendingProc;
HWND t_screen;

const BYTE *SkipSzOrOrd(const BYTE *p)
{
    const WORD *w = reinterpret_cast<const WORD *>(p);
    if (*w == 0xFFFF)
        return p + 4;
    while (*w)
        w++;
    return reinterpret_cast<const BYTE *>(w + 1);
}

const BYTE *AlignDword(const BYTE *p, const BYTE *base)
{
    return base + ((p - base + 3) & ~3);
}

void ScaleShorts(BYTE *p, double sx, double sy)
{
    short v[4];
    memcpy(v, p, sizeof v);
    v[0] = static_cast<short>(v[0] * sx + 0.5);
    v[1] = static_cast<short>(v[1] * sy + 0.5);
    v[2] = static_cast<short>(v[2] * sx + 0.5);
    v[3] = static_cast<short>(v[3] * sy + 0.5);
    memcpy(p, v, sizeof v);
}

// Walks a template (DLGTEMPLATE or DLGTEMPLATEEX): returns its size, finds
// its font (point size and face; none without DS_SETFONT) and, given a
// scale, multiplies every x, y, cx and cy in it, the dialog's and its items'.
size_t WalkTemplate(BYTE *base, WORD **pointSize, const WCHAR **face, const double *scale)
{
    const WORD *head = reinterpret_cast<const WORD *>(base);
    bool extended = head[0] == 1 && head[1] == 0xFFFF;
    DWORD style;
    WORD items;
    BYTE *p;
    if (extended) {
        memcpy(&style, base + 12, 4);
        memcpy(&items, base + 16, 2);
        if (scale)
            ScaleShorts(base + 18, scale[0], scale[1]);
        p = base + 26;
    } else {
        memcpy(&style, base, 4);
        memcpy(&items, base + 8, 2);
        if (scale)
            ScaleShorts(base + 10, scale[0], scale[1]);
        p = base + 18;
    }
    p = const_cast<BYTE *>(SkipSzOrOrd(p));   // menu
    p = const_cast<BYTE *>(SkipSzOrOrd(p));   // class
    p = const_cast<BYTE *>(SkipSzOrOrd(p));   // title
    *pointSize = nullptr;
    *face = nullptr;
    if (style & DS_SETFONT) {
        *pointSize = reinterpret_cast<WORD *>(p);
        p += extended ? 6 : 2;
        *face = reinterpret_cast<const WCHAR *>(p);
        p = const_cast<BYTE *>(SkipSzOrOrd(p));
    }
    for (WORD i = 0; i < items; i++) {
        p = const_cast<BYTE *>(AlignDword(p, base));
        if (scale)
            ScaleShorts(p + (extended ? 12 : 8), scale[0], scale[1]);
        p += extended ? 24 : 18;
        p = const_cast<BYTE *>(SkipSzOrOrd(p));   // class
        p = const_cast<BYTE *>(SkipSzOrOrd(p));   // title
        WORD extra;
        memcpy(&extra, p, 2);
        p += 2 + extra;
    }
    return p - base;
}

// A dialog unit in pixels for a font, as the dialog manager measures it.
void BaseUnits(const WCHAR *face, int pointSize, double *x, double *y)
{
    HDC dc = ::GetDC(nullptr);
    HFONT font = CreateFontW(-MulDiv(pointSize, GetDeviceCaps(dc, LOGPIXELSY), 72), 0, 0, 0, FW_NORMAL, 0, 0, 0,
                             DEFAULT_CHARSET, 0, 0, 0, 0, face);
    HGDIOBJ old = SelectObject(dc, font);
    TEXTMETRICW tm = {};
    GetTextMetricsW(dc, &tm);
    SIZE size = {};
    static const WCHAR kAlphabet[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    GetTextExtentPoint32W(dc, kAlphabet, 52, &size);
    SelectObject(dc, old);
    DeleteObject(font);
    ::ReleaseDC(nullptr, dc);
    *x = (size.cx / 26 + 1) / 2;
    *y = tm.tmHeight;
}

POINT ScreenOrigin(HWND screen)
{
    POINT origin = {0, 0};
    if (screen)
        ClientToScreen(screen, &origin);
    return origin;
}

INT_PTR CALLBACK DeviceDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    DLGPROC proc = reinterpret_cast<DLGPROC>(GetPropW(dialog, kProcProperty));
    if (!proc) {
        proc = t_pendingProc;
        if (!proc)
            return FALSE;
        SetPropW(dialog, kProcProperty, reinterpret_cast<HANDLE>(proc));
    }
    if (message == WM_NCDESTROY)
        RemovePropW(dialog, kProcProperty);
    if (message != WM_INITDIALOG)
        return proc(dialog, message, wParam, lParam);

    // A dialog places itself in device-screen coordinates; on the desktop
    // that screen is a window somewhere, so the place is moved along with it.
    RECT before, after;
    GetWindowRect(dialog, &before);
    INT_PTR result = proc(dialog, message, wParam, lParam);
    GetWindowRect(dialog, &after);
    POINT origin = ScreenOrigin(t_screen);
    if ((before.left != after.left || before.top != after.top) && (origin.x || origin.y))
        SetWindowPos(dialog, nullptr, after.left + origin.x, after.top + origin.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    return result;
}

} // namespace

INT_PTR RunDeviceDialog(HWND screen, bool hiRes, HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate,
                        HWND owner, DLGPROC proc, LPARAM param)
{
    if (!dialogTemplate || !proc)
        return ::DialogBoxIndirectParamW(instance, dialogTemplate, owner, proc, param);

    // A hi-res device runs at 192 dpi, where a dialog unit is twice as many
    // pixels: a copy of the template with its font at twice the size lays the
    // dialog out the same way here.
    BYTE *copy = nullptr;
    LPCDLGTEMPLATE used = dialogTemplate;
    if (hiRes) {
        WORD *pointSize;
        const WCHAR *face;
        BYTE *base = const_cast<BYTE *>(reinterpret_cast<const BYTE *>(dialogTemplate));
        size_t size = WalkTemplate(base, &pointSize, &face, nullptr);
        if (pointSize && *pointSize)
            copy = static_cast<BYTE *>(malloc(size));
        if (copy) {
            memcpy(copy, base, size);
            // Twice the font gives not quite twice the dialog unit; the
            // coordinates make up the rest, so the layout is doubled exactly.
            double x1, y1, x2, y2;
            BaseUnits(face, *pointSize, &x1, &y1);
            BaseUnits(face, *pointSize * 2, &x2, &y2);
            double scale[2] = {x2 > 0 ? 2 * x1 / x2 : 1.0, y2 > 0 ? 2 * y1 / y2 : 1.0};
            WORD *copiedSize;
            const WCHAR *copiedFace;
            WalkTemplate(copy, &copiedSize, &copiedFace, scale);
            *copiedSize = static_cast<WORD>(*copiedSize * 2);
            used = reinterpret_cast<LPCDLGTEMPLATE>(copy);
        }
    }

    DLGPROC outerProc = t_pendingProc;
    HWND outerScreen = t_screen;
    t_pendingProc = proc;
    t_screen = screen;
    INT_PTR result = ::DialogBoxIndirectParamW(instance, used, owner, DeviceDialogProc, param);
    t_pendingProc = outerProc;
    t_screen = outerScreen;
    free(copy);
    return result;
}
#endif
