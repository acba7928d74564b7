#include "platform/desktop/TestHooks.h"
#include "platform/desktop/Trackbar.h"
#include "platform/desktop/TrackbarProcedure.h"
#include "platform/desktop/Window.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <cwctype>

namespace {

using eq::standin::refuse;
using eq::standin::WindowClass;

constexpr WORD DialogAtom = 32770;
constexpr WORD FirstAtom = 0xC000;
constexpr const wchar_t* TrackbarClass = L"msctls_trackbar32";

// The extra bytes of a control contain its font.
constexpr int ControlFontIndex = 0;
constexpr int ControlExtraBytes = sizeof(LONG_PTR);

LRESULT CALLBACK controlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
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

using Classes = std::vector<std::shared_ptr<const WindowClass>>;

std::shared_ptr<const WindowClass> makeClass(const wchar_t* name, WORD atom, WNDPROC procedure, std::size_t extra) {
    return std::make_shared<const WindowClass>(WindowClass{name, atom, procedure, extra});
}

/// Returns the registered classes. The initial classes always exist.
Classes& classes() {
    static Classes registered{
        makeClass(L"#32770", DialogAtom, &DefDlgProcW, DLGWINDOWEXTRA),
        makeClass(L"Static", FirstAtom, &controlProcedure, ControlExtraBytes),
        makeClass(L"Button", FirstAtom + 1, &controlProcedure, ControlExtraBytes),
        makeClass(L"Edit", FirstAtom + 2, &controlProcedure, ControlExtraBytes),
    };
    return registered;
}

bool equalNames(const std::wstring& a, const std::wstring& b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](wchar_t left, wchar_t right) {
        return std::towupper(static_cast<wint_t>(left)) == std::towupper(static_cast<wint_t>(right));
    });
}

Classes::iterator findClass(LPCWSTR nameOrAtom) {
    Classes& all = classes();
    if (!eq::standin::isNumber(nameOrAtom)) {
        const std::wstring name = nameOrAtom;
        return std::find_if(all.begin(), all.end(), [&](const auto& known) { return equalNames(known->name, name); });
    }
    const auto atom = static_cast<WORD>(reinterpret_cast<std::uintptr_t>(nameOrAtom));
    return std::find_if(all.begin(), all.end(), [atom](const auto& known) { return known->atom == atom; });
}

bool commonControlsRegistered = false;

} // namespace

namespace eq::standin {

std::shared_ptr<const WindowClass> findWindowClass(LPCWSTR nameOrAtom) {
    const std::lock_guard guard(windowLock());
    const auto found = findClass(nameOrAtom);
    return found == classes().end() ? nullptr : *found;
}

bool areCommonControlsRegistered() noexcept {
    const std::lock_guard guard(windowLock());
    return commonControlsRegistered;
}

void unregisterCommonControls() noexcept {
    const std::lock_guard guard(windowLock());
    commonControlsRegistered = false;
    std::erase_if(classes(), [](const auto& known) { return known->name == TrackbarClass; });
}

} // namespace eq::standin

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* wanted) noexcept try {
    if (wanted->dwSize != sizeof(INITCOMMONCONTROLSEX)) return FALSE;
    const std::lock_guard guard(eq::standin::windowLock());
    commonControlsRegistered = true;
    const bool missing = !eq::standin::findWindowClass(TrackbarClass);
    if ((wanted->dwICC & ICC_BAR_CLASSES) != 0 && missing)
        classes().push_back(
            makeClass(TrackbarClass, FirstAtom + 3, &eq::standin::trackbarProcedure, eq::standin::TrackbarExtraBytes));
    return (wanted->dwICC & ~ICC_BAR_CLASSES) == 0 ? TRUE : FALSE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}
