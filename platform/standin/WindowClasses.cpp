#include "platform/standin/TestHooks.h"
#include "platform/standin/Trackbar.h"
#include "platform/standin/TrackbarProcedure.h"
#include "platform/standin/Window.h"

#include <algorithm>
#include <cwctype>

namespace {

using standin::WindowClass;

constexpr ATOM DialogAtom = 32770;
constexpr ATOM FirstAtom = 0xC000;
constexpr const wchar_t* TrackbarClass = L"msctls_trackbar32";

using Classes = std::vector<std::shared_ptr<const WindowClass>>;

std::shared_ptr<const WindowClass> makeClass(const wchar_t* name, ATOM atom, WNDPROC procedure, std::size_t extra) {
    return std::make_shared<const WindowClass>(WindowClass{name, atom, procedure, extra});
}

/// With the classes that are always there.
Classes& classes() {
    static Classes registered{
        makeClass(L"#32770", DialogAtom, &DefDlgProcW, DLGWINDOWEXTRA),
        makeClass(L"Static", FirstAtom, &standin::staticProcedure, standin::ControlExtraBytes),
        makeClass(L"Button", FirstAtom + 1, &standin::buttonProcedure, standin::ControlExtraBytes),
        makeClass(L"Edit", FirstAtom + 2, &standin::editProcedure, standin::ControlExtraBytes),
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
    if (!standin::isNumber(nameOrAtom)) {
        const std::wstring name = nameOrAtom;
        return std::find_if(all.begin(), all.end(), [&](const auto& known) { return equalNames(known->name, name); });
    }
    const auto atom = static_cast<ATOM>(reinterpret_cast<std::uintptr_t>(nameOrAtom));
    return std::find_if(all.begin(), all.end(), [atom](const auto& known) { return known->atom == atom; });
}

bool commonControlsRegistered = false;

ATOM registerClass(LPCWSTR name, WNDPROC procedure, std::size_t extra) {
    // Atoms are not used again, so that one of a class that is gone finds nothing.
    static ATOM next = FirstAtom + 3;
    const std::lock_guard guard(standin::windowLock());
    if (findClass(name) != classes().end()) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    classes().push_back(makeClass(name, next, procedure, extra));
    return next++;
}

} // namespace

namespace standin {

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

} // namespace standin

ATOM WINAPI RegisterClassExW(const WNDCLASSEXW* windowClass) noexcept try {
    const bool valid = windowClass->cbSize == sizeof(WNDCLASSEXW) && windowClass->lpfnWndProc &&
                       !standin::isNumber(windowClass->lpszClassName) && windowClass->cbWndExtra >= 0;
    if (!valid) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    return registerClass(windowClass->lpszClassName, windowClass->lpfnWndProc,
                         static_cast<std::size_t>(windowClass->cbWndExtra));
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE /*module*/) noexcept try {
    const std::lock_guard guard(standin::windowLock());
    const auto found = findClass(name);
    if (found == classes().end()) {
        SetLastError(ERROR_CLASS_DOES_NOT_EXIST);
        return FALSE;
    }
    // Each window of a class holds it.
    if (found->use_count() > 1) {
        SetLastError(ERROR_CLASS_HAS_WINDOWS);
        return FALSE;
    }
    classes().erase(found);
    return TRUE;
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* wanted) noexcept try {
    if (wanted->dwSize != sizeof(INITCOMMONCONTROLSEX)) return FALSE;
    const std::lock_guard guard(standin::windowLock());
    commonControlsRegistered = true;
    const bool missing = !standin::findWindowClass(TrackbarClass);
    if ((wanted->dwICC & ICC_BAR_CLASSES) != 0 && missing)
        registerClass(TrackbarClass, &standin::trackbarProcedure, standin::TrackbarExtraBytes);
    return (wanted->dwICC & ~ICC_BAR_CLASSES) == 0 ? TRUE : FALSE;
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}
