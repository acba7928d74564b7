#pragma once

#include "platform/win32.h"

#include <array>
#include <string>
#include <utility>

namespace eq {

/// The number of calls of the functions that WedgeTest.cpp wraps. Always 0 on Windows.
inline int narrowCalls = 0;

inline std::wstring textOf(HWND window) {
    std::array<wchar_t, 64> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

/// A dialog procedure that handles no message.
inline INT_PTR CALLBACK ignoreMessage(HWND, UINT, WPARAM, LPARAM) {
    return 0;
}

inline void readyCommonControls() {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
}

/// Sends a message to a dialog's procedure. Returns the result of the procedure, and the result that the procedure
/// stores in the dialog (7: none).
inline std::pair<INT_PTR, LONG_PTR> answerOf(HWND dialog, UINT message, WPARAM wParam = 0) {
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 7);
    const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrW(dialog, DWLP_DLGPROC));
    const INT_PTR result = procedure(dialog, message, wParam, 0);
    return {result, GetWindowLongPtrW(dialog, DWLP_MSGRESULT)};
}

/// Creates a hidden window that acts as a host's window.
inline HWND makeHostWindow() {
    return CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

} // namespace eq
