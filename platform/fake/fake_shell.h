// fake_shell.h: what the fake device's soft input panel was asked to do.
#pragma once

#include "platform/shell.h"

#include <vector>

namespace fake {

struct SoftInputPanel {
    SIPSTATE state;                  // as last requested; SIP_DOWN at reset
    std::vector<SIPSTATE> requests;  // every request, in order
};

extern SoftInputPanel g_sip;

// Lowers the panel and forgets the requests (fake::Reset calls it).
void ResetShell();

} // namespace fake
