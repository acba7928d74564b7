#include "platform/desktop/Dialogs.h"

#include "platform/desktop/DialogTemplate.h"
#include "platform/desktop/Gdi.h"
#include "platform/desktop/Window.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Refuse.h"

// Creates, runs and ends dialogs.

namespace {

using eq::standin::DialogState;
using eq::standin::DialogTemplate;
using eq::standin::ItemTemplate;
using eq::standin::LockedWindow;
using eq::standin::parameterOf;
using eq::standin::refuse;

constexpr int UnitWidth = 6;   // pixels per 4 horizontal dialog units
constexpr int UnitHeight = 13; // pixels per 8 vertical dialog units

int across(int units) noexcept {
    return MulDiv(units, UnitWidth, 4);
}

int down(int units) noexcept {
    return MulDiv(units, UnitHeight, 8);
}

/// Returns the result of `action` for a dialog's state, or `otherwise` if the window is not a dialog.
template <typename Action, typename Result>
Result withState(HWND dialog, Result otherwise, Action action) noexcept {
    const LockedWindow window(dialog);
    return window && window->dialog ? action(*window->dialog) : otherwise;
}

bool isEnded(HWND dialog) noexcept {
    return withState(dialog, true, [](const DialogState& state) { return state.ended; });
}

HFONT fontOf(HWND dialog) noexcept {
    return withState(dialog, HFONT{}, [](const DialogState& state) { return state.font; });
}

bool isSupported(const DialogTemplate& dialog) noexcept {
    return dialog.menu.isEmpty() && (dialog.style & DS_CENTER) == 0;
}

HWND createFrame(HINSTANCE module, const DialogTemplate& dialog, HWND parent) {
    constexpr std::uintptr_t dialogAtom = 32770;
    const auto place = dialog.place;
    const LPCWSTR windowClass =
        dialog.windowClass.isEmpty() ? eq::standin::handleOfNumber<LPCWSTR>(dialogAtom) : dialog.windowClass.get();
    return CreateWindowExW(dialog.extendedStyle, windowClass, dialog.caption.c_str(), dialog.style & ~WS_VISIBLE,
                           across(place.x), down(place.y), across(place.width), down(place.height), parent, nullptr,
                           module, nullptr);
}

/// Installs the dialog procedure, which has not received any message before.
void bind(HWND dialog, DLGPROC procedure, bool hasFont) {
    if (const LockedWindow window(dialog); window) {
        window->dialog.emplace();
        // A font has no content. Its handle only has to differ from other handles.
        if (hasFont) window->dialog->font = eq::standin::handleOfNumber<HFONT>(eq::standin::newHandleNumber());
    }
    SetWindowLongPtrW(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
    if (hasFont) SendMessageW(dialog, WM_SETFONT, reinterpret_cast<WPARAM>(fontOf(dialog)), 0);
}

bool createControl(HINSTANCE module, HWND dialog, const ItemTemplate& item) {
    const HWND control = CreateWindowExW(
        item.extendedStyle, item.windowClass.get(), item.title.get(), (item.style & ~WS_POPUP) | WS_CHILD,
        across(item.place.x), down(item.place.y), across(item.place.width), down(item.place.height), dialog,
        eq::standin::handleOfNumber<HMENU>(item.id), module, const_cast<void*>(item.creationData));
    if (!control) return false;
    const HFONT font = fontOf(dialog);
    if (font) SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
    return true;
}

bool createControls(HINSTANCE module, HWND dialog, const DialogTemplate& read) {
    for (const ItemTemplate& item : read.items) {
        if (!createControl(module, dialog, item)) return false;
    }
    return true;
}

HWND createDialog(HINSTANCE module, LPCDLGTEMPLATEW source, HWND parent, DLGPROC procedure, LPARAM parameter) {
    if (!source) return refuse(ERROR_INVALID_PARAMETER);
    return eq::standin::createDialog(module, eq::standin::readDialogTemplate(source), parent, procedure, parameter);
}

INT_PTR runDialog(HINSTANCE module, LPCDLGTEMPLATEW source, HWND owner, DLGPROC procedure, LPARAM parameter) {
    if (owner && !IsWindow(owner)) return refuse(ERROR_INVALID_WINDOW_HANDLE);
    const HWND dialog = createDialog(module, source, eq::standin::topLevelOf(owner), procedure, parameter);
    if (!dialog) return -1;
    while (!isEnded(dialog)) eq::standin::dispatchNextMessage();
    const INT_PTR result = withState(dialog, INT_PTR{0}, [](const DialogState& state) { return state.result; });
    if (IsWindow(dialog)) DestroyWindow(dialog);
    return result;
}

DLGPROC procedureOf(HWND dialog) noexcept {
    return eq::standin::handleOfNumber<DLGPROC>(static_cast<std::uintptr_t>(GetWindowLongPtrW(dialog, DWLP_DLGPROC)));
}

/// Returns whether a dialog procedure returns the result of `message` as its return value. For all other messages, the
/// procedure stores the result in DWLP_MSGRESULT.
bool returnsItsResult(UINT message) noexcept {
    switch (message) {
    case WM_INITDIALOG:
    case WM_COMPAREITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_QUERYDRAGICON:
    case WM_CTLCOLOR:
        return true;
    default:
        return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
    }
}

LRESULT defaultDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return message == WM_GETFONT ? parameterOf(fontOf(dialog)) : DefWindowProcW(dialog, message, wParam, lParam);
}

} // namespace

bool eq::standin::isDialog(HWND window) {
    const LockedWindow found(window);
    return found && found->dialog;
}

HWND eq::standin::createDialog(HINSTANCE module, const DialogTemplate& read, HWND parent, DLGPROC procedure,
                               LPARAM parameter) {
    if (!isSupported(read)) return refuse(ERROR_NOT_SUPPORTED);
    const HWND dialog = createFrame(module, read, parent);
    if (!dialog) return nullptr;
    bind(dialog, procedure, (read.style & DS_SETFONT) != 0);
    if (!createControls(module, dialog, read)) {
        const DWORD code = GetLastError();
        DestroyWindow(dialog);
        return refuse(code);
    }
    // The first argument, 0, is the control that would receive the focus. The stand-in has no focus.
    if (procedure) SendMessageW(dialog, WM_INITDIALOG, 0, parameter);
    if ((read.style & WS_VISIBLE) != 0 && IsWindow(dialog)) ShowWindow(dialog, SW_SHOWNORMAL);
    return IsWindow(dialog) ? dialog : nullptr;
}

HWND WINAPI CreateDialogIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept try {
    return createDialog(module, dialog, parent, procedure, parameter);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

HWND WINAPI CreateDialogIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept {
    return CreateDialogIndirectParamW(module, dialog, parent, procedure, parameter);
}

INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept try {
    return runDialog(module, dialog, owner, procedure, parameter);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY, -1);
}

INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept {
    return DialogBoxIndirectParamW(module, dialog, owner, procedure, parameter);
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) noexcept {
    const bool known = withState(dialog, false, [result](DialogState& state) {
        state.result = result;
        state.ended = true;
        return true;
    });
    if (!known) return FALSE;
    ShowWindow(dialog, SW_HIDE);
    // This message wakes the loop of a modal dialog.
    return PostMessageW(dialog, 0, 0, 0);
}

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 0);
    const DLGPROC procedure = procedureOf(dialog);
    const INT_PTR handled = procedure ? procedure(dialog, message, wParam, lParam) : 0;
    if (handled == 0 && IsWindow(dialog)) return defaultDialogProcedure(dialog, message, wParam, lParam);
    return returnsItsResult(message) ? handled : GetWindowLongPtrW(dialog, DWLP_MSGRESULT);
}
