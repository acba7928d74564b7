#pragma once

// Records and answers the message boxes that the thread of the test shows.

#include "tests/support/TestWindows.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

#include <functional>
#include <string>
#include <utility>

namespace eq {

#ifdef _WIN32

/// Records each message box when the system activates it, and presses OK. Only one watch may exist at a time.
class MessageBoxWatch {
public:
    /// `while_open` runs while the box is open, on the thread that shows the box. On Linux, where a box is a text on
    /// standard error, `while_open` does not run.
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
    /// Returns the caption and the text of the last box, each on its own line.
    [[nodiscard]] std::wstring last() const { return m_last; }

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
        constexpr int TextOfABox = 0xFFFF;
        m_last = textOf(box) + L"\n" + textOf(GetDlgItem(box, TextOfABox));
        if (m_while_open) m_while_open();
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    }

    inline static MessageBoxWatch* current = nullptr;

    std::function<void()> m_while_open;
    HHOOK m_hook = nullptr;
    HWND m_last_box = nullptr;
    int m_count = 0;
    std::wstring m_last;
};

#else

/// Captures the message boxes, which the stand-in writes to standard error. Nothing is shown.
class MessageBoxWatch {
public:
    explicit MessageBoxWatch(const std::function<void()>& = {}) { testing::internal::CaptureStderr(); }
    ~MessageBoxWatch() { testing::internal::GetCapturedStderr(); }
    MessageBoxWatch(const MessageBoxWatch&) = delete;
    MessageBoxWatch& operator=(const MessageBoxWatch&) = delete;

    [[nodiscard]] int count() const { return standin::shownMessageBoxes().count - m_countBefore; }
    [[nodiscard]] std::wstring last() const {
        const standin::ShownMessageBoxes boxes = standin::shownMessageBoxes();
        return boxes.lastCaption + L"\n" + boxes.lastText;
    }

private:
    int m_countBefore = standin::shownMessageBoxes().count;
};

#endif

} // namespace eq
