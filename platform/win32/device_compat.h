// device_compat.h: what the device's gcc 4.4 lacks of the C++ the sources are written in; forced in by its build only.
#pragma once

#if defined(__GNUC__) && (__GNUC__ < 4 || (__GNUC__ == 4 && __GNUC_MINOR__ < 6))
#define nullptr __null
#endif
