#include "platform/standin/Keys.h"
#include "platform/standin/Locks.h"
#include "platform/standin/MessageBox.h"
#include "platform/standin/Window.h"

#include <algorithm>
#include <array>

// The keyboard: where it goes, and the keys that a dialog takes for itself.

namespace {

using standin::LockedWindow;
using standin::parameterOf;
using standin::styleOf;

thread_local HWND focusHere = nullptr;
thread_local std::array<BYTE, 256> keysHere{};

bool isUsable(HWND window) noexcept {
    return (styleOf(window) & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE;
}

/// Neither a window nor one above it may be disabled.
bool canHaveFocus(HWND window) noexcept {
    if (GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) return false;
    while (window) {
        const DWORD style = styleOf(window);
        if ((style & WS_DISABLED) != 0) return false;
        window = (style & WS_CHILD) != 0 ? GetParent(window) : nullptr;
    }
    return true;
}

/// The controls below a dialog in their order, those within pages of it included.
void collectControls(HWND parent, std::vector<HWND>& controls) {
    std::vector<HWND> children;
    if (const LockedWindow window(parent); window) children = window->children;
    for (const HWND child : children) {
        const bool isPage = (static_cast<DWORD>(GetWindowLongW(child, GWL_EXSTYLE)) & WS_EX_CONTROLPARENT) != 0;
        if (!isPage) controls.push_back(child);
        if (isPage && isUsable(child)) collectControls(child, controls);
    }
}

HWND nextTabItem(HWND dialog, HWND control, bool previous) {
    std::vector<HWND> controls;
    collectControls(dialog, controls);
    if (previous) std::reverse(controls.begin(), controls.end());
    const auto here = std::find(controls.begin(), controls.end(), control);
    if (here != controls.end()) std::rotate(controls.begin(), here + 1, controls.end());

    const auto isStop = [](HWND window) { return isUsable(window) && (styleOf(window) & WS_TABSTOP) != 0; };
    const auto found = std::find_if(controls.begin(), controls.end(), isStop);
    return found == controls.end() ? control : *found;
}

/// A dialog that is a control of another dialog leaves the keys to that one.
HWND dialogForKeys(HWND dialog) noexcept {
    while ((styleOf(dialog) & DS_CONTROL) != 0) {
        const HWND parent = GetParent(dialog);
        if (!parent || !standin::isDialog(parent)) break;
        dialog = parent;
    }
    return dialog;
}

void command(HWND dialog, int id) noexcept {
    SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), parameterOf(GetDlgItem(dialog, id)));
}

/// Enter: the focused button, else the default one, else OK.
void commandOfEnter(HWND dialog) noexcept {
    const HWND focus = GetFocus();
    if (IsChild(dialog, focus) && (SendMessageW(focus, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0) {
        const auto id = static_cast<DWORD_PTR>(GetDlgCtrlID(focus));
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), parameterOf(focus));
        return;
    }
    const auto answer = static_cast<DWORD_PTR>(SendMessageW(dialog, DM_GETDEFID, 0, 0));
    if (HIWORD(answer) != DC_HASDEFID) return command(dialog, IDOK);
    const HWND button = GetDlgItem(dialog, LOWORD(answer));
    if (!button || IsWindowEnabled(button)) command(dialog, LOWORD(answer));
}

/// Whether the dialog has taken the key.
bool takeKey(HWND dialog, const MSG& message) noexcept {
    const LRESULT code = SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam, parameterOf(&message));
    if ((code & DLGC_WANTMESSAGE) != 0) return false;
    switch (message.wParam) {
    case VK_TAB:
        if ((code & DLGC_WANTTAB) != 0) return false;
        SendMessageW(dialog, WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0 ? 1 : 0, 0);
        return true;
    case VK_CANCEL:
    case VK_ESCAPE:
        command(dialog, IDCANCEL);
        return true;
    case VK_EXECUTE:
    case VK_RETURN:
        commandOfEnter(dialog);
        return true;
    default:
        return false;
    }
}

} // namespace

namespace standin {

void forgetFocus(HWND window) noexcept {
    if (focusHere == window) focusHere = nullptr;
}

void moveFocusOutOf(HWND window) noexcept {
    const HWND focus = GetFocus();
    if (focus == window || IsChild(window, focus))
        SetFocus((styleOf(window) & WS_CHILD) != 0 ? GetParent(window) : nullptr);
}

} // namespace standin

HWND WINAPI SetFocus(HWND window) noexcept {
    const HWND before = focusHere;
    if (window == before) return before;
    if (window && !canHaveFocus(window)) return nullptr;

    focusHere = window;
    if (before) SendMessageW(before, WM_KILLFOCUS, reinterpret_cast<WPARAM>(window), 0);
    // The window that loses it may have given it on.
    if (window && focusHere == window) SendMessageW(window, WM_SETFOCUS, reinterpret_cast<WPARAM>(before), 0);
    return before;
}

HWND WINAPI GetFocus() noexcept {
    return focusHere;
}

SHORT WINAPI GetKeyState(int key) noexcept {
    const BYTE state = keysHere[static_cast<BYTE>(key)];
    return static_cast<SHORT>(((state & 0x80) != 0 ? -0x80 : 0) | (state & 0x01));
}

BOOL WINAPI GetKeyboardState(LPBYTE keys) noexcept {
    std::copy(keysHere.begin(), keysHere.end(), keys);
    return TRUE;
}

BOOL WINAPI SetKeyboardState(LPBYTE keys) noexcept {
    std::copy_n(keys, keysHere.size(), keysHere.begin());
    return TRUE;
}

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) noexcept try {
    if (control == dialog) control = nullptr;
    // Nothing lies before no control.
    if (!control && previous) return nullptr;
    return nextTabItem(dialog, control, previous != FALSE);
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message) noexcept {
    if (!IsWindow(dialog) || (dialog != message->hwnd && !IsChild(dialog, message->hwnd))) return FALSE;
    const bool taken = message->message == WM_KEYDOWN && takeKey(dialogForKeys(dialog), *message);
    if (taken) return TRUE;
    TranslateMessage(message);
    DispatchMessageW(message);
    return TRUE;
}
