// shell_win32.cpp: the soft input panel on the device; a desktop has a real keyboard.
#include "platform/shell.h"

namespace platform {

BOOL SHSipPreference(HWND window, SIPSTATE state)
{
#ifdef _WIN32_WCE
    return ::SHSipPreference(window, state);
#else
    (void)window;
    (void)state;
    return TRUE;
#endif
}

} // namespace platform
