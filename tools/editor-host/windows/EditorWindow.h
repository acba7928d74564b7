#pragma once

#include "platform/win32.h"
#include "tools/editor-host/Platform.h"

#include <exception>

namespace eq {

/// A resizable window that contains the editor. The window has the editor's size at first. Its timer sends idle calls
/// to the effect. While the window is active, the dialog has the keyboard focus.
class EditorWindow {
public:
    /// Throws FileError if the window cannot be created.
    EditorWindow(HostedEditor& editor, const WindowOptions& options);
    ~EditorWindow();
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    /// Handles messages until the user closes the window or its time is over.
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
    HWND m_focused = nullptr;     // the control that had the keyboard focus when the window was last active
    std::exception_ptr m_failure; // the timer's failure, which `run` throws: no exception may pass the system's code
};

} // namespace eq
