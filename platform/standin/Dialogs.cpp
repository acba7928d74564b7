#include "platform/standin/Dialogs.h"

#include "platform/standin/DialogTemplate.h"
#include "platform/standin/Gdi.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Window.h"

// Dialogs from their creation to their end.

namespace {

using standin::DialogState;
using standin::DialogTemplate;
using standin::ItemTemplate;
using standin::LockedWindow;
using standin::parameterOf;
using standin::styleOf;

constexpr int UnitWidth = 6;   // of 4 units across
constexpr int UnitHeight = 13; // of 8 units down

int across(int units) noexcept {
    return MulDiv(units, UnitWidth, 4);
}

int down(int units) noexcept {
    return MulDiv(units, UnitHeight, 8);
}

/// Runs an action with a dialog's state; gives `otherwise` for what is no dialog.
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

bool hasDialogCode(HWND control, LRESULT code) noexcept {
    return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & code) != 0;
}

WORD ownDefault(HWND dialog) noexcept {
    return withState(dialog, WORD{0}, [](const DialogState& state) { return state.defaultId; });
}

void setOwnDefault(HWND dialog, int id) noexcept {
    if (const LockedWindow window(dialog); window && window->dialog) window->dialog->defaultId = static_cast<WORD>(id);
}

bool isSupported(const DialogTemplate& dialog) noexcept {
    return dialog.menu.isEmpty() && (dialog.style & DS_CENTER) == 0;
}

DWORD dialogStyle(DWORD style) noexcept {
    if ((style & DS_CONTROL) != 0) style &= ~(WS_CAPTION | WS_SYSMENU);
    return style | DS_3DLOOK;
}

DWORD dialogExtendedStyle(const DialogTemplate& dialog) noexcept {
    DWORD extended = dialog.extendedStyle;
    if ((dialog.style & DS_MODALFRAME) != 0) extended |= WS_EX_DLGMODALFRAME;
    if ((dialog.style & DS_CONTROL) != 0 || (dialog.style & WS_CHILD) == 0) extended |= WS_EX_CONTROLPARENT;
    return extended;
}

HWND createFrame(HINSTANCE module, const DialogTemplate& dialog, HWND parent) {
    constexpr std::uintptr_t dialogAtom = 32770;
    const auto place = dialog.place;
    POINT origin{across(place.x), down(place.y)};
    const bool ofOwner = parent && (dialog.style & (WS_CHILD | DS_ABSALIGN)) == 0;
    if (ofOwner) MapWindowPoints(parent, nullptr, &origin, 1);
    const LPCWSTR windowClass =
        dialog.windowClass.isEmpty() ? standin::handleOfNumber<LPCWSTR>(dialogAtom) : dialog.windowClass.get();
    return CreateWindowExW(dialogExtendedStyle(dialog), windowClass, dialog.caption.c_str(),
                           dialogStyle(dialog.style) & ~WS_VISIBLE, origin.x, origin.y, across(place.width),
                           down(place.height), parent, nullptr, module, nullptr);
}

/// Ties the procedure to the dialog, which no message has reached before.
void bind(HWND dialog, DLGPROC procedure, bool hasFont) {
    if (const LockedWindow window(dialog); window) {
        window->dialog.emplace();
        // Fonts are only told apart.
        if (hasFont) window->dialog->font = standin::handleOfNumber<HFONT>(standin::newHandleNumber());
    }
    SetWindowLongPtrW(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
    if (hasFont) SendMessageW(dialog, WM_SETFONT, reinterpret_cast<WPARAM>(fontOf(dialog)), 0);
}

bool createControl(HINSTANCE module, HWND dialog, const ItemTemplate& item) {
    DWORD style = item.style;
    if ((style & WS_POPUP) != 0) style &= ~WS_POPUP;
    const HWND control = CreateWindowExW(
        item.extendedStyle | WS_EX_NOPARENTNOTIFY, item.windowClass.get(), item.title.get(), style | WS_CHILD,
        across(item.place.x), down(item.place.y), across(item.place.width), down(item.place.height), dialog,
        standin::handleOfNumber<HMENU>(item.id), module, const_cast<void*>(item.creationData));
    if (!control) return false;
    const HFONT font = fontOf(dialog);
    if (font) SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
    if (hasDialogCode(control, DLGC_DEFPUSHBUTTON)) setOwnDefault(dialog, GetDlgCtrlID(control));
    return true;
}

bool createControls(HINSTANCE module, HWND dialog, const DialogTemplate& read) {
    for (const ItemTemplate& item : read.items) {
        if (!createControl(module, dialog, item) && (read.style & DS_NOFAILCREATE) == 0) return false;
    }
    return true;
}

void initialise(HWND dialog, DWORD style, LPARAM parameter) {
    const HWND focus = GetNextDlgTabItem(dialog, nullptr, FALSE);
    const LRESULT wantsFocus = SendMessageW(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(focus), parameter);
    // A hidden page of another dialog takes no focus away from it.
    const bool mayTakeFocus = (style & DS_CONTROL) == 0 || (style & WS_VISIBLE) != 0;
    if (wantsFocus == 0 || !IsWindow(dialog) || !mayTakeFocus) return;
    // The procedure may have changed which control that is.
    if (const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE)) SetFocus(first);
}

HWND refuse(DWORD code) noexcept {
    SetLastError(code);
    return nullptr;
}

HWND createDialog(HINSTANCE module, LPCDLGTEMPLATEW source, HWND parent, DLGPROC procedure, LPARAM parameter) {
    if (!source) return refuse(ERROR_INVALID_PARAMETER);
    return standin::createDialog(module, standin::readDialogTemplate(source), parent, procedure, parameter);
}

/// Waits for the next message, when the dialog is shown at the latest.
void waitForMessage(HWND dialog, HWND owner, MSG& message) noexcept {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return;
    ShowWindow(dialog, SW_SHOWNORMAL);
    if ((styleOf(dialog) & DS_NOIDLEMSG) == 0) SendMessageW(owner, WM_ENTERIDLE, MSGF_DIALOGBOX, parameterOf(dialog));
    GetMessageW(&message, nullptr, 0, 0);
}

void runUntilEnd(HWND dialog, HWND owner) noexcept {
    while (!isEnded(dialog)) {
        MSG message{};
        waitForMessage(dialog, owner, message);
        if (message.message == WM_QUIT) {
            // It is meant for the loop outside, too.
            PostMessageW(nullptr, WM_QUIT, message.wParam, 0);
            return;
        }
        if (IsDialogMessageW(dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

INT_PTR runDialog(HINSTANCE module, LPCDLGTEMPLATEW source, HWND owner, DLGPROC procedure, LPARAM parameter) {
    if (owner && !IsWindow(owner)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    const HWND top = standin::topLevelOf(owner);
    const bool disables = top && IsWindowEnabled(top);
    if (disables) EnableWindow(top, FALSE);

    const HWND dialog = createDialog(module, source, top, procedure, parameter);
    if (dialog) runUntilEnd(dialog, owner);
    if (disables) EnableWindow(top, TRUE);
    if (!dialog) return -1;
    const INT_PTR result = withState(dialog, INT_PTR{0}, [](const DialogState& state) { return state.result; });
    if (IsWindow(dialog)) DestroyWindow(dialog);
    return result;
}

DLGPROC procedureOf(HWND dialog) noexcept {
    return standin::handleOfNumber<DLGPROC>(static_cast<std::uintptr_t>(GetWindowLongPtrW(dialog, DWLP_DLGPROC)));
}

/// The messages whose result the procedure returns itself.
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

/// The button that looks like the default one, or null.
HWND findDefaultButton(HWND dialog) noexcept {
    HWND child = GetWindow(dialog, GW_CHILD);
    while (child && !hasDialogCode(child, DLGC_DEFPUSHBUTTON)) child = GetWindow(child, GW_HWNDNEXT);
    return child;
}

LRESULT defaultId(HWND dialog) noexcept {
    WORD id = ownDefault(dialog);
    if (id == 0) id = static_cast<WORD>(GetDlgCtrlID(findDefaultButton(dialog)));
    return id == 0 ? 0 : MAKELPARAM(id, DC_HASDEFID);
}

/// A push button that has the focus is the default one; without one it is the dialog's own.
void chooseDefault(HWND dialog, HWND focus) noexcept {
    const WORD id = ownDefault(dialog);
    HWND chosen = id == 0 ? nullptr : GetDlgItem(dialog, id);
    if (hasDialogCode(focus, DLGC_UNDEFPUSHBUTTON | DLGC_DEFPUSHBUTTON)) chosen = focus;
    const HWND before = findDefaultButton(dialog);
    if (before == chosen) return;
    if (before) SendMessageW(before, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
    if (chosen && hasDialogCode(chosen, DLGC_UNDEFPUSHBUTTON))
        SendMessageW(chosen, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
}

/// A dialog gives the focus on to the control that had it, or to its first.
void passFocusOn(HWND dialog) noexcept {
    if (isEnded(dialog)) return;
    const HWND saved =
        withState(dialog, HWND{}, [](DialogState& state) { return std::exchange(state.focus, nullptr); });
    const HWND control = saved && IsWindow(saved) ? saved : GetNextDlgTabItem(dialog, nullptr, FALSE);
    if (control) SetFocus(control);
}

void saveFocus(HWND dialog) noexcept {
    const HWND focus = GetFocus();
    if (!IsChild(dialog, focus)) return;
    withState(dialog, 0, [focus](DialogState& state) {
        state.focus = focus;
        return 0;
    });
}

void moveFocus(HWND dialog, WPARAM wParam, bool toControl) noexcept {
    const HWND target =
        toControl ? standin::handleOf(static_cast<LPARAM>(wParam)) : GetNextDlgTabItem(dialog, GetFocus(), wParam != 0);
    if (!target) return;
    SetFocus(target);
    chooseDefault(dialog, target);
}

LRESULT defaultDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_SHOWWINDOW:
        if (wParam == 0) saveFocus(dialog);
        return 0;
    case WM_SETFOCUS:
        passFocusOn(dialog);
        return 0;
    case WM_NEXTDLGCTL:
        moveFocus(dialog, wParam, LOWORD(static_cast<DWORD_PTR>(lParam)) != 0);
        return 0;
    case DM_SETDEFID:
        setOwnDefault(dialog, LOWORD(wParam));
        return TRUE;
    case DM_GETDEFID:
        return isEnded(dialog) ? 0 : defaultId(dialog);
    case WM_GETFONT:
        return parameterOf(fontOf(dialog));
    case WM_CLOSE:
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, parameterOf(GetDlgItem(dialog, IDCANCEL)));
        return 0;
    case WM_INITDIALOG:
    case WM_COMPAREITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
        return 0;
    default:
        return DefWindowProcW(dialog, message, wParam, lParam);
    }
}

} // namespace

bool standin::isDialog(HWND window) {
    const LockedWindow found(window);
    return found && found->dialog;
}

HWND standin::createDialog(HINSTANCE module, const DialogTemplate& read, HWND parent, DLGPROC procedure,
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
    if (procedure) initialise(dialog, read.style, parameter);
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
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return -1;
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
    if (IsChild(dialog, GetFocus())) SetFocus(dialog);
    if (const LockedWindow window(dialog); window) window->style &= ~WS_VISIBLE;
    // Wakes the loop that waits for a message.
    return PostMessageW(dialog, WM_NULL, 0, 0);
}

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 0);
    const DLGPROC procedure = procedureOf(dialog);
    const INT_PTR handled = procedure ? procedure(dialog, message, wParam, lParam) : 0;
    if (handled == 0 && IsWindow(dialog)) return defaultDialogProcedure(dialog, message, wParam, lParam);
    return returnsItsResult(message) ? handled : GetWindowLongPtrW(dialog, DWLP_MSGRESULT);
}

BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rectangle) noexcept {
    if (!standin::isDialog(dialog)) return FALSE;
    *rectangle = {across(rectangle->left), down(rectangle->top), across(rectangle->right), down(rectangle->bottom)};
    return TRUE;
}
