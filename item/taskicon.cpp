// taskicon.cpp: taking the taskbar status icon off the screen when it is to move.
#include "item/item.h"
#include "platform/platform.h"

// The tick's last snapshot of the screen under the icon is put back where the
// icon stands now, and the taskbar is asked to paint that square again: from
// its second tick on the snapshot holds the icon itself, so only the
// taskbar's own paint really clears it. The next tick draws the icon at
// whatever xLocation says then.
void EraseTaskbarIcon()
{
    int s = IsHiResScreen() ? 2 : 1, side = 16 * s;
    RECT square = {(LONG)g_item.xLocation, 5 * s, (LONG)g_item.xLocation + side, 5 * s + side};
    if (g_item.iconBackground) {
        HDC screen = platform::GetDC(nullptr);
        if (screen) {
            HDC memory = CreateCompatibleDC(screen);
            if (memory) {
                HGDIOBJ old = SelectObject(memory, g_item.iconBackground);
                BitBlt(screen, square.left, square.top, side, side, memory, 0, 0, SRCCOPY);
                SelectObject(memory, old);
                DeleteDC(memory);
            }
            platform::ReleaseDC(nullptr, screen);
        }
    }
    // The taskbar lies at the top left of the device screen, so the square's
    // screen place is its place in the taskbar too.
    HWND taskbar = platform::FindWindowW(L"HHTaskBar", nullptr);
    if (taskbar)
        InvalidateRect(taskbar, &square, TRUE);
}
