#include "platform/standin/Messages.h"

#include "platform/standin/CodePages.h"
#include "platform/standin/Locks.h"
#include "platform/standin/Window.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>

// The ways of messages: sent at once, or through the queues.

namespace {

using standin::LockedWindow;
using standin::parameterOf;

struct Posted {
    DWORD thread;
    MSG message;
};

struct Queue {
    std::deque<Posted> messages; // of all threads
    std::condition_variable_any arrived;
};

Queue& queue() {
    static Queue posted;
    return posted;
}

LRESULT callProcedure(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return procedure ? procedure(window, message, wParam, lParam) : 0;
}

/// The procedure of a window of the calling thread, or null and the reason.
WNDPROC procedureHere(HWND handle) noexcept {
    const LockedWindow window(handle);
    if (!window) return nullptr;
    if (window->thread == GetCurrentThreadId()) return window->procedure;
    SetLastError(ERROR_WINDOW_OF_OTHER_THREAD);
    return nullptr;
}

BOOL setText(HWND handle, LPCWSTR text) {
    const LockedWindow window(handle);
    if (!window) return FALSE;
    window->text = text ? text : L"";
    return TRUE;
}

LRESULT copyText(HWND handle, wchar_t* buffer, std::size_t size) noexcept {
    const LockedWindow window(handle);
    if (!window || size == 0) return 0;
    const std::size_t copied = window->text.copy(buffer, size - 1);
    buffer[copied] = 0;
    return static_cast<LRESULT>(copied);
}

LRESULT textLength(HWND handle) noexcept {
    const LockedWindow window(handle);
    return window ? static_cast<LRESULT>(window->text.size()) : 0;
}

/// The text of a new window. Controls that show a picture have its number in that place.
BOOL takeName(HWND window, const CREATESTRUCTW& record) {
    return standin::isNumber(record.lpszName) || setText(window, record.lpszName);
}

LRESULT defaultProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NCCREATE:
        return takeName(window, *standin::handleOfNumber<const CREATESTRUCTW*>(static_cast<std::uintptr_t>(lParam)));
    case WM_SETTEXT:
        return setText(window, standin::handleOfNumber<LPCWSTR>(static_cast<std::uintptr_t>(lParam)));
    case WM_GETTEXT:
        return copyText(window, standin::handleOfNumber<LPWSTR>(static_cast<std::uintptr_t>(lParam)), wParam);
    case WM_GETTEXTLENGTH:
        return textLength(window);
    case WM_CLOSE:
        DestroyWindow(window);
        return 0;
    default:
        return 0;
    }
}

LRESULT getTextNarrow(HWND window, WPARAM size, LPSTR buffer) {
    if (size == 0) return 0;
    std::wstring wide(size, L'\0');
    wide.resize(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, size, parameterOf(wide.data()))));
    std::string narrow(wide.size() * 3 + 1, '\0');
    const int length = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), narrow.data(),
                                           static_cast<int>(narrow.size()), nullptr, nullptr);
    const std::size_t copied = narrow.copy(buffer, std::min<std::size_t>(static_cast<std::size_t>(length), size - 1));
    buffer[copied] = '\0';
    return static_cast<LRESULT>(copied);
}

LRESULT sendNarrow(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto text = standin::handleOfNumber<LPSTR>(static_cast<std::uintptr_t>(lParam));
    if (message == WM_SETTEXT && text)
        return SendMessageW(window, message, wParam, parameterOf(standin::wideFromAnsi(text).c_str()));
    if (message == WM_GETTEXT) return getTextNarrow(window, wParam, text);
    return SendMessageW(window, message, wParam, lParam);
}

DWORD ticks() noexcept {
    using namespace std::chrono;
    return static_cast<DWORD>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

/// Which messages a caller wants.
struct Filter {
    HWND window;
    UINT first;
    UINT last;
    DWORD thread = GetCurrentThreadId();

    bool fits(const Posted& posted) const noexcept {
        if (posted.thread != thread) return false;
        const MSG& message = posted.message;
        if (window && message.hwnd != window && !IsChild(window, message.hwnd)) return false;
        const bool all = first == 0 && last == 0;
        return all || message.message == WM_QUIT || (message.message >= first && message.message <= last);
    }
};

/// The first fitting message. The lock must be held.
bool takePosted(const Filter& filter, MSG& message, bool keep) {
    auto& messages = queue().messages;
    const auto found =
        std::find_if(messages.begin(), messages.end(), [&](const Posted& posted) { return filter.fits(posted); });
    if (found == messages.end()) return false;
    message = found->message;
    if (!keep) messages.erase(found);
    return true;
}

void post(DWORD thread, const MSG& message) {
    const std::lock_guard guard(standin::windowLock());
    queue().messages.push_back({thread, message});
    queue().arrived.notify_all();
}

} // namespace

std::wstring standin::wideFromAnsi(LPCSTR text) {
    const int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), size);
    wide.resize(wide.size() - 1);
    return wide;
}

void standin::forgetMessages(HWND window) noexcept {
    const std::lock_guard guard(windowLock());
    std::erase_if(queue().messages, [window](const Posted& posted) { return posted.message.hwnd == window; });
}

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return callProcedure(procedureHere(window), window, message, wParam, lParam);
}

LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept try {
    return sendNarrow(window, message, wParam, lParam);
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return CallWindowProcW(procedure, window, message, wParam, lParam);
}

LRESULT WINAPI CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return callProcedure(procedure, window, message, wParam, lParam);
}

LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept try {
    return defaultProcedure(window, message, wParam, lParam);
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

BOOL WINAPI PostMessageW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept try {
    DWORD thread = GetCurrentThreadId();
    if (handle) thread = GetWindowThreadProcessId(handle, nullptr);
    if (thread == 0) return FALSE;
    post(thread, {handle, message, wParam, lParam, ticks(), {}});
    return TRUE;
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT removal) noexcept {
    const std::lock_guard guard(standin::windowLock());
    return takePosted({window, first, last}, *message, (removal & PM_REMOVE) == 0);
}

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT first, UINT last) noexcept {
    std::unique_lock guard(standin::windowLock());
    const Filter filter{window, first, last};
    queue().arrived.wait(guard, [&] { return takePosted(filter, *message, false); });
    return message->message != WM_QUIT;
}

BOOL WINAPI TranslateMessage(const MSG* message) noexcept {
    switch (message->message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
        return TRUE;
    default:
        return FALSE;
    }
}

LRESULT WINAPI DispatchMessageW(const MSG* message) noexcept {
    if (!message->hwnd) return 0;
    return SendMessageW(message->hwnd, message->message, message->wParam, message->lParam);
}
