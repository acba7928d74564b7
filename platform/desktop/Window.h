#pragma once

// Types and functions that the sources of this folder share.

#include "platform/desktop/Dialogs.h"
#include "platform/standin/Errors.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace eq::standin {

struct WindowClass {
    std::wstring name;
    WORD atom;
    WNDPROC procedure;
    std::size_t extraBytes;
};

/// Returns the class with a name or an atom, or null. Names are compared without regard to case.
std::shared_ptr<const WindowClass> findWindowClass(LPCWSTR nameOrAtom);

/// The state that a dialog has in addition to the state of a window.
struct DialogState {
    HFONT font = nullptr;
    INT_PTR result = 0;
    bool ended = false;
};

struct Window {
    std::shared_ptr<const WindowClass> windowClass;
    DWORD thread = 0;
    WNDPROC procedure = nullptr;
    HWND parent = nullptr; // null unless this is a child window
    HWND owner = nullptr;
    std::vector<HWND> children; // in the order of their creation
    DWORD style = 0;
    UINT_PTR id = 0;
    LONG_PTR userData = 0;
    LONG width = 0;
    LONG height = 0;
    std::wstring text;
    std::vector<std::byte> extra;
    std::map<std::wstring, HANDLE, std::less<>> properties;
    std::optional<DialogState> dialog;
};

/// Returns the lock of all windows and message queues. No thread calls a window procedure while it holds this lock.
std::recursive_mutex& windowLock();

/// Finds a window and holds `windowLock`, so that no other thread changes or destroys the window. If the handle is not
/// a window, the object is empty and sets the last error.
class LockedWindow {
public:
    explicit LockedWindow(HWND handle);

    explicit operator bool() const noexcept { return m_window != nullptr; }
    Window* operator->() const noexcept { return m_window.get(); }
    Window& operator*() const noexcept { return *m_window; }

private:
    std::lock_guard<std::recursive_mutex> m_guard;
    std::shared_ptr<Window> m_window;
};

/// Returns the windows of all threads that `owner` owns.
std::vector<HWND> ownedWindows(HWND owner);

bool isDialog(HWND window);

/// Returns the top-level window that contains `window`, which may be `window` itself. Only top-level windows own
/// windows.
HWND topLevelOf(HWND window);

/// Removes the queued messages of a window that is being destroyed.
void forgetMessages(HWND window) noexcept;

/// Waits for a message to the calling thread, and passes it to its window.
void dispatchNextMessage();

inline LPARAM parameterOf(const void* pointer) noexcept {
    return reinterpret_cast<LPARAM>(pointer);
}

inline bool isNumber(const void* nameOrNumber) noexcept {
    return reinterpret_cast<std::uintptr_t>(nameOrNumber) <= 0xFFFF;
}

} // namespace eq::standin
