#include "platform/standin/CodePages.h"
#include "platform/standin/Window.h"

#include <cstring>
#include <unistd.h>

// What windows are asked for and told about themselves.

namespace {

using standin::LockedWindow;
using standin::parameterOf;
using standin::Window;

/// The origin of a window's client area on the screen, if it is a window or null.
bool addOrigin(HWND handle, POINT& origin) {
    while (handle) {
        const LockedWindow window(handle);
        if (!window) return false;
        origin.x += window->origin.x;
        origin.y += window->origin.y;
        handle = window->parent;
    }
    return true;
}

/// A place in the window's own bytes, where a number need not lie on a boundary of its kind, or null.
std::byte* ownBytesAt(Window& window, int index, std::size_t size) noexcept {
    const bool inside = index >= 0 && static_cast<std::size_t>(index) + size <= window.extra.size();
    return inside ? window.extra.data() + index : nullptr;
}

LONG_PTR refuseIndex() noexcept {
    SetLastError(ERROR_INVALID_INDEX);
    return 0;
}

LONG_PTR namedValue(const Window& window, int index) noexcept {
    switch (index) {
    case GWL_STYLE:
        return static_cast<LONG>(window.style);
    case GWL_EXSTYLE:
        return static_cast<LONG>(window.extendedStyle);
    case GWLP_ID:
        return static_cast<LONG_PTR>(window.id);
    case GWLP_HINSTANCE:
        return parameterOf(window.module);
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(window.procedure);
    case GWLP_USERDATA:
        return window.userData;
    default:
        return refuseIndex();
    }
}

LONG_PTR setNamedValue(Window& window, int index, LONG_PTR value) noexcept {
    const LONG_PTR before = namedValue(window, index);
    switch (index) {
    case GWL_STYLE:
        window.style = static_cast<DWORD>(value);
        return before;
    case GWL_EXSTYLE:
        window.extendedStyle = static_cast<DWORD>(value);
        return before;
    case GWLP_ID:
        window.id = static_cast<UINT_PTR>(value);
        return before;
    case GWLP_WNDPROC:
        window.procedure = reinterpret_cast<WNDPROC>(value); // NOLINT(performance-no-int-to-ptr)
        return before;
    case GWLP_USERDATA:
        window.userData = value;
        return before;
    default:
        return refuseIndex();
    }
}

template <typename Number>
Number getLong(HWND handle, int index) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    if (index < 0) return static_cast<Number>(namedValue(*window, index));
    const std::byte* const place = ownBytesAt(*window, index, sizeof(Number));
    if (!place) return static_cast<Number>(refuseIndex());
    Number value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

template <typename Number>
Number setLong(HWND handle, int index, Number value) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    // A procedure is an address, which a narrower number cannot hold.
    if (index == GWLP_WNDPROC && sizeof(Number) < sizeof(WNDPROC)) return static_cast<Number>(refuseIndex());
    if (index < 0) return static_cast<Number>(setNamedValue(*window, index, value));
    std::byte* const place = ownBytesAt(*window, index, sizeof(Number));
    if (!place) return static_cast<Number>(refuseIndex());
    Number before;
    std::memcpy(&before, place, sizeof before);
    std::memcpy(place, &value, sizeof value);
    return before;
}

} // namespace

int WINAPI GetDlgCtrlID(HWND handle) noexcept {
    const LockedWindow window(handle);
    return window ? static_cast<int>(window->id) : 0;
}

DWORD WINAPI GetWindowThreadProcessId(HWND handle, LPDWORD process) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    if (process) *process = static_cast<DWORD>(getpid());
    return window->thread;
}

int WINAPI GetClassNameW(HWND handle, LPWSTR buffer, int size) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    if (size <= 0) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    const std::size_t copied = window->windowClass->name.copy(buffer, static_cast<std::size_t>(size - 1));
    buffer[copied] = 0;
    return static_cast<int>(copied);
}

int WINAPI GetWindowTextA(HWND window, LPSTR buffer, int size) noexcept {
    if (!buffer || size <= 0) return 0;
    *buffer = '\0';
    return static_cast<int>(SendMessageA(window, WM_GETTEXT, static_cast<WPARAM>(size), parameterOf(buffer)));
}

int WINAPI GetWindowTextW(HWND window, LPWSTR buffer, int size) noexcept {
    if (!buffer || size <= 0) return 0;
    *buffer = 0;
    return static_cast<int>(SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(size), parameterOf(buffer)));
}

int WINAPI GetWindowTextLengthW(HWND window) noexcept {
    return static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
}

BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text) noexcept {
    return SendMessageA(window, WM_SETTEXT, 0, parameterOf(text)) != 0;
}

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) noexcept {
    return SendMessageW(window, WM_SETTEXT, 0, parameterOf(text)) != 0;
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rectangle) noexcept {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    *rectangle = {0, 0, window->width, window->height};
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rectangle) noexcept {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    POINT origin{};
    addOrigin(handle, origin);
    *rectangle = {origin.x, origin.y, origin.x + window->width, origin.y + window->height};
    return TRUE;
}

int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) noexcept {
    POINT start{};
    POINT end{};
    if (!addOrigin(from, start) || !addOrigin(to, end)) return 0;
    const POINT offset{start.x - end.x, start.y - end.y};
    for (UINT i = 0; i < count; ++i) {
        points[i].x += offset.x;
        points[i].y += offset.y;
    }
    return static_cast<int>(MAKELPARAM(static_cast<DWORD>(offset.x), static_cast<DWORD>(offset.y)));
}

LONG WINAPI GetWindowLongW(HWND window, int index) noexcept {
    return getLong<LONG>(window, index);
}

LONG WINAPI SetWindowLongW(HWND window, int index, LONG value) noexcept {
    return setLong<LONG>(window, index, value);
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index) noexcept {
    return getLong<LONG_PTR>(window, index);
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept {
    return SetWindowLongPtrW(window, index, value);
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value) noexcept {
    return setLong<LONG_PTR>(window, index, value);
}

BOOL WINAPI SetPropW(HWND handle, LPCWSTR name, HANDLE value) noexcept try {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    window->properties.insert_or_assign(name, value);
    return TRUE;
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

HANDLE WINAPI GetPropW(HWND handle, LPCWSTR name) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    const auto found = window->properties.find(std::wstring_view(name));
    return found == window->properties.end() ? nullptr : found->second;
}

HANDLE WINAPI RemovePropW(HWND handle, LPCWSTR name) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    const auto found = window->properties.find(std::wstring_view(name));
    if (found == window->properties.end()) return nullptr;
    return window->properties.extract(found).mapped();
}
