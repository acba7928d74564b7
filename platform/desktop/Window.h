#pragma once

// What the sources of the windows share.

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

/// The class of a name or an atom, or null. Names are told apart without regard to case.
std::shared_ptr<const WindowClass> findWindowClass(LPCWSTR nameOrAtom);

/// What a window has if it was made as a dialog.
struct DialogState {
    HFONT font = nullptr;
    INT_PTR result = 0;
    bool ended = false;
};

struct Window {
    std::shared_ptr<const WindowClass> windowClass;
    DWORD thread = 0;
    WNDPROC procedure = nullptr;
    HWND parent = nullptr; // of a child alone
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

/// Guards all windows, and the queues. Never held while a procedure is called.
std::recursive_mutex& windowLock();

/// A window that no other thread changes or ends meanwhile; empty, with the last error, for what is no window.
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

/// Every window, of whichever thread.
std::vector<HWND> ownedWindows(HWND owner);

bool isDialog(HWND window);

/// The window at the top, which owns what is opened over any window below it.
HWND topLevelOf(HWND window);

/// The queued messages of a window that goes.
void forgetMessages(HWND window) noexcept;

/// Waits until something is posted to the calling thread, and hands it to its window.
void dispatchNextMessage();

inline LPARAM parameterOf(const void* pointer) noexcept {
    return reinterpret_cast<LPARAM>(pointer);
}

inline bool isNumber(const void* nameOrNumber) noexcept {
    return reinterpret_cast<std::uintptr_t>(nameOrNumber) <= 0xFFFF;
}

} // namespace eq::standin
