#include "platform/standin/Trackbar.h"

#include "platform/standin/Keys.h"
#include "platform/standin/TrackbarProcedure.h"

#include <algorithm>

namespace {

constexpr LONG LineSize = 1;

/// A trackbar's state, which lies in its window's own bytes.
class Trackbar {
public:
    explicit Trackbar(HWND window) noexcept : m_window(window) {}

    LONG minimum() const noexcept { return field(0); }
    LONG maximum() const noexcept { return field(1); }
    LONG position() const noexcept { return field(2); }
    LONG page() const noexcept { return field(3); }

    void setRange(LONG minimum, LONG maximum) noexcept {
        setField(0, minimum);
        setField(1, maximum);
        setField(3, std::max<LONG>((maximum - minimum) / 5, 1));
        setPosition(position());
    }

    void setPosition(LONG position) noexcept {
        // A range may be upside down; then its end wins.
        setField(2, std::min(std::max(position, minimum()), maximum()));
    }

    /// Tells the parent if there was a way to go.
    void move(LONG position, WORD code) noexcept {
        const LONG before = this->position();
        setPosition(position);
        if (this->position() != before) notify(code);
    }

    void notify(WORD code) const noexcept {
        const UINT message = (style() & TBS_VERT) != 0 ? WM_VSCROLL : WM_HSCROLL;
        SendMessageW(GetParent(m_window), message, code, standin::parameterOf(m_window));
    }

    DWORD style() const noexcept { return static_cast<DWORD>(GetWindowLongW(m_window, GWL_STYLE)); }

private:
    static int indexOf(int field) noexcept { return field * static_cast<int>(sizeof(LONG)); }
    LONG field(int field) const noexcept { return GetWindowLongW(m_window, indexOf(field)); }
    void setField(int field, LONG value) noexcept { SetWindowLongW(m_window, indexOf(field), value); }

    HWND m_window;
};

/// Up and left go to smaller positions. With TBS_DOWNISLEFT the keys of the other direction are turned round.
bool isTurned(const Trackbar& trackbar, WPARAM key) noexcept {
    if ((trackbar.style() & TBS_DOWNISLEFT) == 0) return false;
    const bool vertical = (trackbar.style() & TBS_VERT) != 0;
    const bool horizontalKey = key == VK_LEFT || key == VK_RIGHT;
    return vertical == horizontalKey;
}

void step(Trackbar& trackbar, LONG size, bool down, WORD codeUp, WORD codeDown) noexcept {
    const LONG position = trackbar.position();
    if (down) {
        trackbar.move(position + size, codeDown);
    } else {
        trackbar.move(position - size, codeUp);
    }
}

void keyDown(Trackbar trackbar, WPARAM key) noexcept {
    const bool turned = isTurned(trackbar, key);
    switch (key) {
    case VK_UP:
    case VK_LEFT:
        return step(trackbar, LineSize, turned, TB_LINEUP, TB_LINEDOWN);
    case VK_DOWN:
    case VK_RIGHT:
        return step(trackbar, LineSize, !turned, TB_LINEUP, TB_LINEDOWN);
    case VK_PRIOR:
        return step(trackbar, trackbar.page(), turned, TB_PAGEUP, TB_PAGEDOWN);
    case VK_NEXT:
        return step(trackbar, trackbar.page(), !turned, TB_PAGEUP, TB_PAGEDOWN);
    case VK_HOME:
        return trackbar.move(trackbar.minimum(), TB_TOP);
    case VK_END:
        return trackbar.move(trackbar.maximum(), TB_BOTTOM);
    default:
        return;
    }
}

void keyUp(const Trackbar& trackbar, WPARAM key) noexcept {
    // The keys that move it have successive codes.
    if (key >= VK_PRIOR && key <= VK_DOWN) trackbar.notify(TB_ENDTRACK);
}

LONG lowSigned(LPARAM value) noexcept {
    return static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(value)));
}

LONG highSigned(LPARAM value) noexcept {
    return static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(value)));
}

} // namespace

LRESULT CALLBACK standin::trackbarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
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
    case TBM_GETRANGEMIN:
        return trackbar.minimum();
    case TBM_GETRANGEMAX:
        return trackbar.maximum();
    case TBM_SETRANGE:
        trackbar.setRange(lowSigned(lParam), highSigned(lParam));
        return 0;
    case TBM_SETRANGEMIN:
        trackbar.setRange(static_cast<LONG>(lParam), trackbar.maximum());
        return 0;
    case TBM_SETRANGEMAX:
        trackbar.setRange(trackbar.minimum(), static_cast<LONG>(lParam));
        return 0;
    case TBM_GETLINESIZE:
        return LineSize;
    case TBM_GETPAGESIZE:
        return trackbar.page();
    case WM_KEYDOWN:
        keyDown(trackbar, wParam);
        return 0;
    case WM_KEYUP:
        keyUp(trackbar, wParam);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
