#include "platform/desktop/Window.h"
#include "platform/standin/CodePages.h"
#include "platform/standin/Refuse.h"

#include <cstring>

// Reads and changes the state of windows.

namespace {

using eq::standin::LockedWindow;
using eq::standin::refuse;
using eq::standin::Window;

/// Returns the address of a number in the window's extra bytes, or null if the number is outside these bytes. The
/// address may be unaligned.
std::byte* ownBytesAt(Window& window, int index) noexcept {
    const bool inside = static_cast<std::size_t>(index) + sizeof(LONG_PTR) <= window.extra.size();
    return inside ? window.extra.data() + index : nullptr;
}

LONG_PTR namedValue(const Window& window, int index) noexcept {
    switch (index) {
    case GWL_STYLE:
        return static_cast<LONG>(window.style);
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(window.procedure);
    case GWLP_USERDATA:
        return window.userData;
    default:
        return refuse(ERROR_INVALID_INDEX);
    }
}

LONG_PTR setNamedValue(Window& window, int index, LONG_PTR value) noexcept {
    const LONG_PTR before = namedValue(window, index);
    switch (index) {
    case GWLP_WNDPROC:
        window.procedure = reinterpret_cast<WNDPROC>(value); // NOLINT(performance-no-int-to-ptr)
        return before;
    case GWLP_USERDATA:
        window.userData = value;
        return before;
    default:
        return refuse(ERROR_INVALID_INDEX);
    }
}

} // namespace

int WINAPI GetDlgCtrlID(HWND handle) noexcept {
    const LockedWindow window(handle);
    return window ? static_cast<int>(window->id) : 0;
}

int WINAPI GetWindowTextW(HWND handle, LPWSTR buffer, int size) noexcept {
    if (!buffer || size <= 0) return 0;
    const LockedWindow window(handle);
    const std::size_t copied = window ? window->text.copy(buffer, static_cast<std::size_t>(size - 1)) : 0;
    buffer[copied] = 0;
    return static_cast<int>(copied);
}

BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text) noexcept try {
    return SetWindowTextW(window, text ? eq::standin::wideFromAnsi(text).c_str() : nullptr);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI SetWindowTextW(HWND handle, LPCWSTR text) noexcept try {
    const LockedWindow window(handle);
    if (window) window->text = text ? text : L"";
    return window ? TRUE : FALSE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rectangle) noexcept {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    *rectangle = {0, 0, window->width, window->height};
    return TRUE;
}

LONG WINAPI GetWindowLongW(HWND handle, int index) noexcept {
    return static_cast<LONG>(index < 0 ? GetWindowLongPtrW(handle, index) : refuse(ERROR_INVALID_INDEX));
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND handle, int index) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    if (index < 0) return namedValue(*window, index);
    const std::byte* const place = ownBytesAt(*window, index);
    if (!place) return refuse(ERROR_INVALID_INDEX);
    LONG_PTR value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept {
    return SetWindowLongPtrW(window, index, value);
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND handle, int index, LONG_PTR value) noexcept {
    const LockedWindow window(handle);
    if (!window) return 0;
    if (index < 0) return setNamedValue(*window, index, value);
    std::byte* const place = ownBytesAt(*window, index);
    if (!place) return refuse(ERROR_INVALID_INDEX);
    LONG_PTR before;
    std::memcpy(&before, place, sizeof before);
    std::memcpy(place, &value, sizeof value);
    return before;
}

BOOL WINAPI SetPropW(HWND handle, LPCWSTR name, HANDLE value) noexcept try {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    window->properties.insert_or_assign(name, value);
    return TRUE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

HANDLE WINAPI GetPropW(HWND handle, LPCWSTR name) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    const auto found = window->properties.find(std::wstring_view(name));
    return found == window->properties.end() ? nullptr : found->second;
}
