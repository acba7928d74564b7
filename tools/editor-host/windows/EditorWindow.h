#pragma once

#include "platform/win32.h"
#include "tools/editor-host/Platform.h"

#include <exception>

namespace eq {

/// A resizable window of the editor's size with the editor in it. Its timer sends the effect its idle calls. While the
/// window is active, the dialog has the keyboard.
class EditorWindow {
public:
    /// Throws FileError when there can be no window.
    EditorWindow(HostedEditor& editor, const WindowOptions& options);
    ~EditorWindow();
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    /// Handles messages until the window is closed or its time is over.
    void run();

private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    [[nodiscard]] HWND dialog() const;
    void rememberFocus();
    void focusDialog() const;
    void onTimer();
    void takeScreenshot() const;

    HostedEditor& m_editor;
    const WindowOptions& m_options;
    HWND m_window = nullptr;
    HWND m_focused = nullptr;     // the dialog's control that had the keyboard when the window was last active
    std::exception_ptr m_failure; // kept, for the system's code cannot be unwound
};

} // namespace eq
