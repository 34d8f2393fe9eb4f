// shell.h: the handheld shell's soft input panel, behind the platform door.
#pragma once

#include <windows.h>

#ifdef _WIN32_WCE
#include <aygshell.h>
#else
// The device shell's request states, as its SDK numbers them.
enum SIPSTATE {
    SIP_UP = 0,
    SIP_DOWN,
    SIP_FORCEDOWN,
    SIP_UNCHANGED,
    SIP_INPUTDIALOG
};
#endif

namespace platform {

// Raises (SIP_UP) or lowers (SIP_DOWN) the soft keyboard on behalf of a window.
BOOL SHSipPreference(HWND window, SIPSTATE state);

} // namespace platform
