#pragma once

// Sees and answers the message boxes that the test's own thread shows.

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"

#include <cstdio>
#endif

#include <functional>
#include <string>
#include <utility>

#ifdef _WIN32

/// Looks at each message box as it is about to be activated, and presses OK. One at a time.
class MessageBoxWatch {
public:
    /// `while_open` runs on the thread that shows the box, while the box is open.
    explicit MessageBoxWatch(std::function<void()> while_open = {}) : m_while_open(std::move(while_open)) {
        current = this;
        m_hook = SetWindowsHookExW(WH_CBT, &onEvent, nullptr, GetCurrentThreadId());
    }
    ~MessageBoxWatch() {
        UnhookWindowsHookEx(m_hook);
        current = nullptr;
    }
    MessageBoxWatch(const MessageBoxWatch&) = delete;
    MessageBoxWatch& operator=(const MessageBoxWatch&) = delete;

    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] std::wstring text() const { return m_text; }
    [[nodiscard]] std::wstring caption() const { return m_caption; }

private:
    static LRESULT CALLBACK onEvent(int code, WPARAM window, LPARAM details) {
        if (code == HCBT_ACTIVATE) current->onActivate(reinterpret_cast<HWND>(window));
        return CallNextHookEx(nullptr, code, window, details);
    }

    void onActivate(HWND box) {
        wchar_t class_name[16] = {};
        GetClassNameW(box, class_name, 16);
        if (std::wstring(class_name) != L"#32770" || box == m_last_box) return;

        m_last_box = box;
        ++m_count;
        m_caption = textOf(box);
        constexpr int TextOfABox = 0xFFFF;
        m_text = textOf(GetDlgItem(box, TextOfABox));
        if (m_while_open) m_while_open();
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    }

    static std::wstring textOf(HWND window) {
        wchar_t text[256] = {};
        GetWindowTextW(window, text, 256);
        return text;
    }

    inline static MessageBoxWatch* current = nullptr;

    std::function<void()> m_while_open;
    HHOOK m_hook = nullptr;
    HWND m_last_box = nullptr;
    int m_count = 0;
    std::wstring m_text;
    std::wstring m_caption;
};

#else

/// A box is written to standard error, so what runs while it is open runs from a stream in that place.
class MessageBoxWatch {
public:
    explicit MessageBoxWatch(std::function<void()> while_open = {}) : m_while_open(std::move(while_open)) {
        cookie_io_functions_t functions{};
        functions.write = [](void* self, const char*, std::size_t size) {
            auto& while_open_now = static_cast<MessageBoxWatch*>(self)->m_while_open;
            if (while_open_now) std::exchange(while_open_now, nullptr)();
            return static_cast<ssize_t>(size);
        };
        m_stream = fopencookie(this, "w", functions);
        std::setvbuf(m_stream, nullptr, _IONBF, 0);
        m_before = std::exchange(stderr, m_stream);
    }
    ~MessageBoxWatch() {
        stderr = m_before;
        std::fclose(m_stream);
    }
    MessageBoxWatch(const MessageBoxWatch&) = delete;
    MessageBoxWatch& operator=(const MessageBoxWatch&) = delete;

    [[nodiscard]] int count() const { return standin::shownMessageBoxes().count - m_count_before; }
    [[nodiscard]] std::wstring text() const { return standin::shownMessageBoxes().lastText; }
    [[nodiscard]] std::wstring caption() const { return standin::shownMessageBoxes().lastCaption; }

private:
    std::function<void()> m_while_open;
    int m_count_before = standin::shownMessageBoxes().count;
    std::FILE* m_stream = nullptr;
    std::FILE* m_before = nullptr;
};

#endif
