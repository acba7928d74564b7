#pragma once

#include "platform/UniqueHandle.h"
#include "platform/win32.h"

// Owner types for Win32 handles.

namespace eq {

inline bool closeKey(HKEY key) noexcept {
    return RegCloseKey(key) == ERROR_SUCCESS;
}
using RegistryKey = UniqueHandle<HKEY, closeKey>;

inline bool closeWindow(HWND window) noexcept {
    return DestroyWindow(window) != FALSE;
}
using Window = UniqueHandle<HWND, closeWindow>;

inline constexpr std::intptr_t InvalidHandle = -1; // INVALID_HANDLE_VALUE as a number

inline bool closeFile(HANDLE file) noexcept {
    return CloseHandle(file) != FALSE;
}
using File = UniqueHandle<HANDLE, closeFile, InvalidHandle>;

inline bool closeSearch(HANDLE search) noexcept {
    return FindClose(search) != FALSE;
}
using FileSearch = UniqueHandle<HANDLE, closeSearch, InvalidHandle>;

/// Owns the device context of a window, or of the screen if the window is null.
class WindowContext {
public:
    explicit WindowContext(HWND window) noexcept : m_window(window), m_context(GetDC(window)) {}
    ~WindowContext() { ReleaseDC(m_window, m_context); }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;

    HDC get() const noexcept { return m_context; }

private:
    HWND m_window;
    HDC m_context;
};

} // namespace eq
