#include "platform/desktop/Trackbar.h"

#include "platform/desktop/TrackbarProcedure.h"

#include <algorithm>

namespace {

/// The state of a trackbar, which is stored in the extra bytes of its window.
class Trackbar {
public:
    explicit Trackbar(HWND window) noexcept : m_window(window) {}

    LONG_PTR position() const noexcept { return field(2); }

    void setRange(LONG_PTR minimum, LONG_PTR maximum) noexcept {
        setField(0, minimum);
        setField(1, maximum);
        setPosition(position());
    }

    void setPosition(LONG_PTR position) noexcept {
        // If the maximum is less than the minimum, the position is the maximum.
        setField(2, std::min(std::max(position, field(0)), field(1)));
    }

private:
    static int indexOf(int field) noexcept { return field * static_cast<int>(sizeof(LONG_PTR)); }
    LONG_PTR field(int field) const noexcept { return GetWindowLongPtrW(m_window, indexOf(field)); }
    void setField(int field, LONG_PTR value) noexcept { SetWindowLongPtrW(m_window, indexOf(field), value); }

    HWND m_window;
};

SHORT lowSigned(LPARAM value) noexcept {
    return static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(value)));
}

SHORT highSigned(LPARAM value) noexcept {
    return static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(value)));
}

} // namespace

LRESULT CALLBACK eq::standin::trackbarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    Trackbar trackbar(window);
    switch (message) {
    case WM_CREATE:
        trackbar.setRange(0, 100);
        return 0;
    case TBM_GETPOS:
        return trackbar.position();
    case TBM_SETPOS:
        trackbar.setPosition(static_cast<LONG>(lParam));
        return 0;
    case TBM_SETRANGE:
        trackbar.setRange(lowSigned(lParam), highSigned(lParam));
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
