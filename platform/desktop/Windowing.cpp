#include "platform/desktop/Windowing.h"

#include "platform/desktop/TestHooks.h"
#include "platform/desktop/Window.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Locks.h"
#include "platform/standin/Refuse.h"

#include <algorithm>

// Creates and destroys windows, and keeps their tree.

namespace {

using eq::standin::LockedWindow;
using eq::standin::parameterOf;
using eq::standin::refuse;
using eq::standin::Window;

eq::standin::HandleTable<Window>& windows() {
    static eq::standin::HandleTable<Window> table;
    return table;
}

bool isChildStyle(DWORD style) noexcept {
    return (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}

std::shared_ptr<Window> makeWindow(const CREATESTRUCTW& record,
                                   std::shared_ptr<const eq::standin::WindowClass> windowClass) {
    auto made = std::make_shared<Window>();
    Window& window = *made;
    const auto style = static_cast<DWORD>(record.style);
    const bool child = isChildStyle(style);
    window.thread = GetCurrentThreadId();
    window.procedure = windowClass->procedure;
    window.extra.resize(windowClass->extraBytes);
    window.windowClass = std::move(windowClass);
    (child ? window.parent : window.owner) = child ? record.hwndParent : eq::standin::topLevelOf(record.hwndParent);
    window.style = style;
    window.id = (style & WS_CHILD) != 0 ? reinterpret_cast<UINT_PTR>(record.hMenu) : 0;
    window.width = std::max<LONG>(record.cx, 0);
    window.height = std::max<LONG>(record.cy, 0);
    // A control that shows a picture has the picture's number instead of a text.
    if (!eq::standin::isNumber(record.lpszName)) window.text = record.lpszName;
    return made;
}

/// Registers a window and adds it to the children of its parent. Returns the new handle.
HWND enter(std::shared_ptr<Window> window) {
    const std::lock_guard guard(eq::standin::windowLock());
    const HWND parent = window->parent;
    const auto handle = static_cast<HWND>(windows().add(std::move(window)));
    if (const LockedWindow found(parent); found) found->children.push_back(handle);
    return handle;
}

void unlink(HWND handle, HWND parent) {
    const LockedWindow found(parent);
    if (found) std::erase(found->children, handle);
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

/// Removes a window after all windows below it.
void remove(HWND window) {
    for (const HWND child : childrenOf(window)) remove(child);
    if (!IsWindow(window)) return;
    if (const HWND parent = GetParent(window)) unlink(window, parent);
    SendMessageW(window, WM_NCDESTROY, 0, 0);
    eq::standin::forgetMessages(window);
    windows().remove(window);
}

HWND createWindow(const CREATESTRUCTW& record) {
    const auto style = static_cast<DWORD>(record.style);
    if (record.hwndParent && !IsWindow(record.hwndParent)) return refuse(ERROR_INVALID_WINDOW_HANDLE);
    auto windowClass = record.lpszClass ? eq::standin::findWindowClass(record.lpszClass) : nullptr;
    if (!windowClass) return refuse(ERROR_CLASS_DOES_NOT_EXIST);
    if (isChildStyle(style) && !record.hwndParent) return refuse(ERROR_TLW_WITH_WSCHILD);

    const HWND handle = enter(makeWindow(record, std::move(windowClass)));
    SendMessageW(handle, WM_CREATE, 0, parameterOf(&record));
    return handle;
}

BOOL destroyWindow(HWND handle) {
    DWORD thread = 0;
    if (const LockedWindow window(handle); window) thread = window->thread;
    if (thread != GetCurrentThreadId()) {
        if (thread != 0) SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    for (const HWND owned : eq::standin::ownedWindows(handle)) DestroyWindow(owned);
    if (IsWindow(handle)) sendDestroy(handle);
    if (IsWindow(handle)) remove(handle);
    return TRUE;
}

} // namespace

namespace eq::standin {

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

} // namespace eq::standin

HWND WINAPI CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE module, LPVOID parameter) noexcept try {
    return createWindow({parameter, module, menuOrId, parent, height, width, y, x, static_cast<LONG>(style), text,
                         className, extendedStyle});
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI DestroyWindow(HWND window) noexcept try { return destroyWindow(window); } catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI ShowWindow(HWND handle, int command) noexcept {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    const bool wasVisible = (window->style & WS_VISIBLE) != 0;
    window->style = command != SW_HIDE ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
    return wasVisible;
}

BOOL WINAPI IsWindow(HWND window) noexcept {
    return windows().find(window) ? TRUE : FALSE;
}

HWND WINAPI GetParent(HWND handle) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    return (window->style & WS_POPUP) != 0 ? window->owner : window->parent;
}

HWND WINAPI GetWindow(HWND handle, UINT relation) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    if (relation == GW_CHILD) return window->children.empty() ? nullptr : window->children.front();
    if (relation != GW_HWNDNEXT) return refuse(ERROR_NOT_SUPPORTED);

    const LockedWindow parent(window->parent);
    if (!parent) return nullptr;
    const auto& siblings = parent->children;
    const auto here = std::find(siblings.begin(), siblings.end(), handle);
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
