// taskicon.cpp: taking the taskbar status icon off the screen when it is to move.
#include "item/item.h"
#include "platform/platform.h"

// The tick's last snapshot of the screen under the icon is put back where the
// icon stands now; the next tick draws it at whatever xLocation says then.
void EraseTaskbarIcon()
{
    if (!g_item.iconBackground)
        return;
    int s = IsHiResScreen() ? 2 : 1, side = 16 * s;
    HDC screen = platform::GetDC(nullptr);
    if (!screen)
        return;
    HDC memory = CreateCompatibleDC(screen);
    if (memory) {
        HGDIOBJ old = SelectObject(memory, g_item.iconBackground);
        BitBlt(screen, (int)g_item.xLocation, 5 * s, side, side, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
    }
    platform::ReleaseDC(nullptr, screen);
}
