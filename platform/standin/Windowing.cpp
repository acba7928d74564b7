#include "platform/standin/Windowing.h"

#include "platform/standin/HandleTable.h"
#include "platform/standin/Locks.h"
#include "platform/standin/TestHooks.h"
#include "platform/standin/Window.h"

#include <algorithm>

// The life of windows, and their order in it.

namespace {

using standin::LockedWindow;
using standin::parameterOf;
using standin::styleOf;
using standin::Window;

standin::HandleTable<Window>& windows() {
    static standin::HandleTable<Window> table;
    return table;
}

HWND refuse(DWORD code) noexcept {
    SetLastError(code);
    return nullptr;
}

bool isChildStyle(DWORD style) noexcept {
    return (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}

bool isOverlappedStyle(DWORD style) noexcept {
    return (style & (WS_CHILD | WS_POPUP)) == 0;
}

/// The styles that a window really gets.
DWORD adjustedStyle(DWORD style) noexcept {
    if (isChildStyle(style)) return style;
    return style | WS_CLIPSIBLINGS | (isOverlappedStyle(style) ? WS_CAPTION : 0);
}

DWORD adjustedExtendedStyle(DWORD extended, DWORD style) noexcept {
    const bool framed = (extended & WS_EX_STATICEDGE) == 0 && (style & (WS_DLGFRAME | WS_THICKFRAME)) != 0;
    const bool edge = (extended & WS_EX_DLGMODALFRAME) != 0 || framed;
    return edge ? extended | WS_EX_WINDOWEDGE : extended & ~WS_EX_WINDOWEDGE;
}

LONG orDefault(int value) noexcept {
    return value == CW_USEDEFAULT ? 0 : value;
}

std::shared_ptr<Window> makeWindow(const CREATESTRUCTW& record, DWORD style,
                                   std::shared_ptr<const standin::WindowClass> windowClass) {
    auto made = std::make_shared<Window>();
    Window& window = *made;
    const bool child = isChildStyle(style);
    window.thread = GetCurrentThreadId();
    window.module = record.hInstance;
    window.procedure = windowClass->procedure;
    window.extra.resize(windowClass->extraBytes);
    window.windowClass = std::move(windowClass);
    (child ? window.parent : window.owner) = child ? record.hwndParent : standin::topLevelOf(record.hwndParent);
    // It becomes visible by being shown.
    window.style = adjustedStyle(style) & ~WS_VISIBLE;
    window.extendedStyle = adjustedExtendedStyle(record.dwExStyle, window.style);
    window.id = (style & WS_CHILD) != 0 ? reinterpret_cast<UINT_PTR>(record.hMenu) : 0;
    window.origin = {record.x, record.y};
    window.width = std::max<LONG>(record.cx, 0);
    window.height = std::max<LONG>(record.cy, 0);
    window.owesSize = isOverlappedStyle(style);
    return made;
}

/// Makes it known, below its parent.
HWND enter(std::shared_ptr<Window> window) {
    const std::lock_guard guard(standin::windowLock());
    const HWND parent = window->parent;
    const auto handle = static_cast<HWND>(windows().add(std::move(window)));
    if (const LockedWindow found(parent); found) found->children.push_back(handle);
    return handle;
}

void unlink(HWND handle, HWND parent) {
    const LockedWindow found(parent);
    if (found) std::erase(found->children, handle);
}

void tellSize(HWND handle) {
    RECT client{};
    GetClientRect(handle, &client);
    SendMessageW(handle, WM_SIZE, 0, MAKELPARAM(static_cast<DWORD>(client.right), static_cast<DWORD>(client.bottom)));
    POINT origin{};
    if (const LockedWindow window(handle); window) origin = window->origin;
    SendMessageW(handle, WM_MOVE, 0, MAKELPARAM(static_cast<DWORD>(origin.x), static_cast<DWORD>(origin.y)));
}

/// Unless a window wants that its parent is not told.
void notifyParent(HWND window, UINT event) {
    const bool silent = (static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE)) & WS_EX_NOPARENTNOTIFY) != 0;
    if (!isChildStyle(styleOf(window)) || silent) return;
    SendMessageW(GetParent(window), WM_PARENTNOTIFY, MAKEWPARAM(event, static_cast<DWORD_PTR>(GetDlgCtrlID(window))),
                 parameterOf(window));
}

std::vector<HWND> childrenOf(HWND window) {
    const LockedWindow found(window);
    return found ? found->children : std::vector<HWND>{};
}

void sendDestroy(HWND window) {
    SendMessageW(window, WM_DESTROY, 0, 0);
    for (const HWND child : childrenOf(window)) {
        if (IsWindow(child)) sendDestroy(child);
    }
}

/// The end of a window: those below it go first.
void remove(HWND window) {
    for (const HWND child : childrenOf(window)) remove(child);
    if (!IsWindow(window)) return;
    standin::forgetFocus(window);
    if (const HWND parent = GetParent(window)) unlink(window, parent);
    SendMessageW(window, WM_NCDESTROY, 0, 0);
    standin::forgetMessages(window);
    windows().remove(window);
}

/// Sends the messages of creation. A procedure that refuses one ends the window.
bool sendCreation(HWND handle, CREATESTRUCTW record) {
    const bool accepted = SendMessageW(handle, WM_NCCREATE, 0, parameterOf(&record)) != 0 &&
                          SendMessageW(handle, WM_CREATE, 0, parameterOf(&record)) != -1;
    if (!accepted) {
        remove(handle);
        return false;
    }
    if (!isOverlappedStyle(static_cast<DWORD>(record.style))) tellSize(handle);
    notifyParent(handle, WM_CREATE);
    if ((static_cast<DWORD>(record.style) & WS_VISIBLE) != 0) ShowWindow(handle, SW_SHOW);
    return IsWindow(handle) != FALSE;
}

HWND createWindow(const CREATESTRUCTW& record) {
    const auto style = static_cast<DWORD>(record.style);
    if (record.hwndParent && !IsWindow(record.hwndParent)) return refuse(ERROR_INVALID_WINDOW_HANDLE);
    auto windowClass = record.lpszClass ? standin::findWindowClass(record.lpszClass) : nullptr;
    if (!windowClass) return refuse(ERROR_CLASS_DOES_NOT_EXIST);
    if (isChildStyle(style) && !record.hwndParent) return refuse(ERROR_TLW_WITH_WSCHILD);

    const HWND handle = enter(makeWindow(record, style, std::move(windowClass)));
    return sendCreation(handle, record) ? handle : nullptr;
}

void hideForDestruction(HWND window) {
    if ((styleOf(window) & WS_VISIBLE) == 0) return;
    if (isChildStyle(styleOf(window))) {
        ShowWindow(window, SW_HIDE);
    } else if (const LockedWindow found(window); found) {
        found->style &= ~WS_VISIBLE;
    }
}

BOOL destroyWindow(HWND handle) {
    DWORD thread = 0;
    if (const LockedWindow window(handle); window) thread = window->thread;
    if (thread != GetCurrentThreadId()) {
        if (thread != 0) SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    notifyParent(handle, WM_DESTROY);
    if (IsWindow(handle)) hideForDestruction(handle);
    for (const HWND owned : standin::ownedWindows(handle)) DestroyWindow(owned);
    if (IsWindow(handle)) sendDestroy(handle);
    if (IsWindow(handle)) remove(handle);
    return TRUE;
}

} // namespace

namespace standin {

std::recursive_mutex& windowLock() {
    static std::recursive_mutex lock;
    return lock;
}

LockedWindow::LockedWindow(HWND handle) : m_guard(windowLock()), m_window(windows().find(handle)) {
    if (!m_window) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
}

std::vector<HWND> ownedWindows(HWND owner) {
    std::vector<HWND> owned;
    const std::lock_guard guard(windowLock());
    windows().forEach([&](HANDLE handle, const Window& window) {
        if (window.owner == owner) owned.push_back(static_cast<HWND>(handle));
    });
    return owned;
}

HWND topLevelOf(HWND window) {
    for (HWND parent = window; parent;) {
        window = parent;
        const LockedWindow found(window);
        parent = found ? found->parent : nullptr;
    }
    return window;
}

std::size_t liveWindows() noexcept {
    return windows().size();
}

} // namespace standin

HWND WINAPI CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE module, LPVOID parameter) noexcept try {
    return createWindow({parameter, module, menuOrId, parent, static_cast<int>(orDefault(height)),
                         static_cast<int>(orDefault(width)), static_cast<int>(orDefault(y)),
                         static_cast<int>(orDefault(x)), static_cast<LONG>(style), text, className, extendedStyle});
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI DestroyWindow(HWND window) noexcept try { return destroyWindow(window); } catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

BOOL WINAPI ShowWindow(HWND handle, int command) noexcept {
    if (!IsWindow(handle)) return FALSE;
    const bool wasVisible = (styleOf(handle) & WS_VISIBLE) != 0;
    const bool show = command != SW_HIDE;
    if (show == wasVisible) return wasVisible;

    SendMessageW(handle, WM_SHOWWINDOW, show, 0);
    bool owedSize = false;
    if (const LockedWindow window(handle); window) {
        window->style = show ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
        owedSize = show && std::exchange(window->owesSize, false);
    }
    if (!show) standin::moveFocusOutOf(handle);
    if (owedSize) tellSize(handle);
    return wasVisible;
}

BOOL WINAPI EnableWindow(HWND handle, BOOL enable) noexcept {
    if (!IsWindow(handle)) return FALSE;
    const bool wasDisabled = (styleOf(handle) & WS_DISABLED) != 0;
    if (wasDisabled == (enable == FALSE)) return wasDisabled;
    if (const LockedWindow window(handle); window) window->style ^= WS_DISABLED;
    if (!enable && GetFocus() == handle) SetFocus(nullptr);
    SendMessageW(handle, WM_ENABLE, enable ? 1 : 0, 0);
    return wasDisabled;
}

BOOL WINAPI IsWindow(HWND window) noexcept {
    return windows().find(window) ? TRUE : FALSE;
}

BOOL WINAPI IsWindowVisible(HWND handle) noexcept {
    while (handle) {
        const LockedWindow window(handle);
        if (!window || (window->style & WS_VISIBLE) == 0) return FALSE;
        handle = window->parent;
    }
    return TRUE;
}

BOOL WINAPI IsWindowEnabled(HWND window) noexcept {
    return IsWindow(window) && (styleOf(window) & WS_DISABLED) == 0;
}

BOOL WINAPI IsChild(HWND parent, HWND handle) noexcept {
    while (parent && handle) {
        const LockedWindow window(handle);
        handle = window ? window->parent : nullptr;
        if (handle == parent) return TRUE;
    }
    return FALSE;
}

HWND WINAPI GetParent(HWND handle) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    return (window->style & WS_POPUP) != 0 ? window->owner : window->parent;
}

HWND WINAPI GetWindow(HWND handle, UINT relation) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    if (relation == GW_OWNER) return window->owner;
    if (relation == GW_CHILD) return window->children.empty() ? nullptr : window->children.front();
    if (relation != GW_HWNDNEXT && relation != GW_HWNDPREV) return refuse(ERROR_NOT_SUPPORTED);

    const LockedWindow parent(window->parent);
    if (!parent) return nullptr;
    const auto& siblings = parent->children;
    const auto here = std::find(siblings.begin(), siblings.end(), handle);
    if (relation == GW_HWNDPREV) return here == siblings.begin() ? nullptr : *(here - 1);
    return here == siblings.end() || here + 1 == siblings.end() ? nullptr : *(here + 1);
}

HWND WINAPI GetDlgItem(HWND handle, int id) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    const auto& children = window->children;
    const auto found =
        std::find_if(children.begin(), children.end(), [id](HWND child) { return GetDlgCtrlID(child) == id; });
    return found == children.end() ? refuse(ERROR_CONTROL_ID_NOT_FOUND) : *found;
}
