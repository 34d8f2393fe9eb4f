// fake_shell.cpp: a soft input panel that only remembers what it was told.
#include "platform/fake/fake_shell.h"

namespace fake {

SoftInputPanel g_sip = {SIP_DOWN, {}};

void ResetShell()
{
    g_sip.state = SIP_DOWN;
    g_sip.requests.clear();
}

} // namespace fake

namespace platform {

BOOL SHSipPreference(HWND, SIPSTATE state)
{
    fake::g_sip.state = state;
    fake::g_sip.requests.push_back(state);
    return TRUE;
}

} // namespace platform
