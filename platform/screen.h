// screen.h: the window class of the desktop Today host's emulated device screen.
#pragma once

#define DEVICE_SCREEN_CLASS L"QuorvaneDeviceScreen"
