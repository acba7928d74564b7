#include "platform/desktop/Messages.h"

#include "platform/desktop/Window.h"
#include "platform/standin/Locks.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>

// Sends messages directly to window procedures, or posts them to a queue.

namespace {

using eq::standin::LockedWindow;
using eq::standin::refuse;

struct Posted {
    DWORD thread;
    MSG message;
};

struct Queue {
    std::deque<Posted> messages; // the posted messages of all threads
    std::condition_variable_any arrived;
};

Queue& queue() {
    static Queue posted;
    return posted;
}

/// Returns the procedure of a window that belongs to the calling thread. For any other handle returns null and sets the
/// last error.
WNDPROC procedureHere(HWND handle) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    if (window->thread == GetCurrentThreadId()) return window->procedure;
    return refuse(ERROR_WINDOW_OF_OTHER_THREAD);
}

DWORD ticks() noexcept {
    using namespace std::chrono;
    return static_cast<DWORD>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

/// Moves the calling thread's first message from the queue to `message`. Returns false if there is none. The caller
/// holds `windowLock`.
bool takePosted(MSG& message) {
    auto& messages = queue().messages;
    const auto found =
        std::find_if(messages.begin(), messages.end(),
                     [thread = GetCurrentThreadId()](const Posted& posted) { return posted.thread == thread; });
    if (found == messages.end()) return false;
    message = found->message;
    messages.erase(found);
    return true;
}

void post(DWORD thread, const MSG& message) {
    const std::lock_guard guard(eq::standin::windowLock());
    queue().messages.push_back({thread, message});
    queue().arrived.notify_all();
}

} // namespace

void eq::standin::forgetMessages(HWND window) noexcept {
    const std::lock_guard guard(windowLock());
    std::erase_if(queue().messages, [window](const Posted& posted) { return posted.message.hwnd == window; });
}

void eq::standin::dispatchNextMessage() {
    MSG message{};
    {
        std::unique_lock guard(windowLock());
        queue().arrived.wait(guard, [&] { return takePosted(message); });
    }
    DispatchMessageW(&message);
}

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return CallWindowProcA(procedureHere(window), window, message, wParam, lParam);
}

LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return procedure ? procedure(window, message, wParam, lParam) : 0;
}

LRESULT WINAPI DefWindowProcW(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) noexcept {
    return 0;
}

BOOL WINAPI PostMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept try {
    DWORD thread = GetCurrentThreadId();
    if (handle) {
        const LockedWindow window(handle);
        if (!window) return FALSE;
        thread = window->thread;
    }
    post(thread, {handle, message, wParam, lParam, ticks(), {}});
    return TRUE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT removal) noexcept {
    if (window || first != 0 || last != 0 || removal != PM_REMOVE) return refuse(ERROR_NOT_SUPPORTED);
    const std::lock_guard guard(eq::standin::windowLock());
    return takePosted(*message);
}

LRESULT WINAPI DispatchMessageW(const MSG* message) noexcept {
    if (!message->hwnd) return 0;
    return SendMessageW(message->hwnd, message->message, message->wParam, message->lParam);
}
