#pragma once

#include "platform/win32.h"

#include <array>
#include <string>

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

/// Creates a hidden window that acts as a host's window.
inline HWND makeHostWindow() {
    return CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

} // namespace eq
