// winekeepalive.cpp: an idle hidden window that keeps Wine's helpers up during a test run.
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    HWND window = CreateWindowExW(0, L"STATIC", L"wine keep-alive", 0, 0, 0, 1, 1, nullptr, nullptr,
                                  instance, nullptr);
    // Never outlive a forgotten run by much.
    SetTimer(window, 1, 60 * 60 * 1000, nullptr);
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_TIMER)
            break;
        DispatchMessageW(&msg);
    }
    return 0;
}
