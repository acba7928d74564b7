#include "platform/standin/Window.h"

// The predefined controls, as far as a dialog and its tests see them: their texts, fonts and keys.

namespace {

void click(HWND window) noexcept {
    const auto id = static_cast<DWORD_PTR>(GetDlgCtrlID(window));
    SendMessageW(GetParent(window), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), standin::parameterOf(window));
}

constexpr LONG ButtonKinds = 0x0F;

void setKind(HWND window, WPARAM kind) noexcept {
    const LONG style = GetWindowLongW(window, GWL_STYLE) & ~ButtonKinds;
    SetWindowLongW(window, GWL_STYLE, style | (static_cast<LONG>(kind) & ButtonKinds));
}

LRESULT dialogCodeOfButton(HWND window) noexcept {
    switch (GetWindowLongW(window, GWL_STYLE) & ButtonKinds) {
    case BS_PUSHBUTTON:
        return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
    case BS_DEFPUSHBUTTON:
        return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
    default:
        return DLGC_BUTTON;
    }
}

/// What all controls do.
LRESULT controlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_SETFONT:
        SetWindowLongPtrW(window, standin::ControlFontIndex, static_cast<LONG_PTR>(wParam));
        return 0;
    case WM_GETFONT:
        return GetWindowLongPtrW(window, standin::ControlFontIndex);
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace

LRESULT CALLBACK standin::staticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_GETDLGCODE) return DLGC_STATIC;
    return controlProcedure(window, message, wParam, lParam);
}

LRESULT CALLBACK standin::buttonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_GETDLGCODE:
        return dialogCodeOfButton(window);
    case BM_SETSTYLE:
        setKind(window, wParam);
        return 0;
    case BM_CLICK:
        click(window);
        return 0;
    default:
        return controlProcedure(window, message, wParam, lParam);
    }
}

LRESULT CALLBACK standin::editProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_GETDLGCODE) return DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
    return controlProcedure(window, message, wParam, lParam);
}
