#include "platform/standin/Window.h"

LRESULT CALLBACK standin::controlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_SETFONT:
        SetWindowLongPtrW(window, ControlFontIndex, static_cast<LONG_PTR>(wParam));
        return 0;
    case WM_GETFONT:
        return GetWindowLongPtrW(window, ControlFontIndex);
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
