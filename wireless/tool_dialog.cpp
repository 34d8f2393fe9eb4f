// tool_dialog.cpp: where the wireless tools place themselves on the screen.
#include "wireless/tools.h"
#include "item/item.h"
#include "platform/platform.h"

void PlaceWirelessDialog(HWND dialog, bool belowTaskbar)
{
    IsLandscape();   // the screen may have turned since the item last looked
    RECT rc;
    GetWindowRect(dialog, &rc);
    int w = rc.right - rc.left + 1, h = rc.bottom - rc.top + 1;
    int x = (g_item.screenWidth - w) / 2;
    int y = (g_item.screenHeight - h) / 2;
    if (belowTaskbar) {
        int taskbarHeight = 26;
        HWND taskbar = platform::FindWindowW(L"HHTaskBar", nullptr);
        RECT tb;
        if (taskbar && GetWindowRect(taskbar, &tb))
            taskbarHeight = tb.bottom - tb.top + 1;
        if (y < taskbarHeight)
            y = taskbarHeight;
    }
    MoveWindow(dialog, x, y, w, h, FALSE);
}
