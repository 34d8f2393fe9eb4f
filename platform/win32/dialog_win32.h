// dialog_win32.h: the desktop stand-in's modal dialog run (not on the device).
#pragma once

#include <windows.h>

#ifndef _WIN32_WCE
// Runs a modal dialog as the device would show it on `screen`, the host's
// emulated screen (null: the real screen): a place the dialog gives itself
// is taken as one on that screen, and on a hi-res screen the dialog is laid
// out at the device's 192 dpi.
INT_PTR RunDeviceDialog(HWND screen, bool hiRes, HINSTANCE instance, LPCDLGTEMPLATE dialogTemplate,
                        HWND owner, DLGPROC proc, LPARAM param);
// A copy of a template laid out as at the device's 192 dpi (malloc'ed; null
// when it has no font of its own or memory is short).
BYTE *CopyTemplateAtDeviceDpi(LPCDLGTEMPLATE dialogTemplate);
#endif
