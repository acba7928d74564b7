#include "tools/editor-host/windows/EditorWindow.h"

#include "tools/common/Errors.h"
#include "tools/editor-host/windows/Screenshot.h"

#include <chrono>

namespace eq {

namespace {

constexpr const wchar_t* ClassName = L"EditorHost";
constexpr UINT_PTR IdleTimer = 1;
constexpr UINT IdleMilliseconds = 30;

double secondsSinceStart() {
    using Clock = std::chrono::steady_clock;
    static const Clock::time_point start = Clock::now();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

HINSTANCE program() {
    return GetModuleHandleW(nullptr);
}

} // namespace

EditorWindow::EditorWindow(HostedEditor& editor, const WindowOptions& options) : m_editor(editor), m_options(options) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = program();
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszClassName = ClassName;
    RegisterClassExW(&windowClass);

    const ERect size = editor.size();
    RECT frame = {0, 0, size.right - size.left, size.bottom - size.top};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
    m_window = CreateWindowExW(0, ClassName, L"Parametric Equalizer", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                               frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr, program(), this);
    if (!m_window) throw FileError("the window cannot be created: is there a screen?");
    editor.open(m_window);
    ShowWindow(m_window, SW_SHOWNORMAL);
    SetTimer(m_window, IdleTimer, IdleMilliseconds, nullptr);
}

EditorWindow::~EditorWindow() {
    if (m_window) DestroyWindow(m_window);
    UnregisterClassW(ClassName, program());
}

void EditorWindow::run() {
    secondsSinceStart();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const HWND keyReader = dialog();
        if (keyReader && IsDialogMessageW(keyReader, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (m_failure) std::rethrow_exception(m_failure);
}

LRESULT CALLBACK EditorWindow::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const created = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* const object = static_cast<EditorWindow*>(created->lpCreateParams);
        object->m_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    }
    auto* const object = reinterpret_cast<EditorWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return object ? object->handle(message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT EditorWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_TIMER:
        onTimer();
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE) rememberFocus();
        return DefWindowProcW(m_window, message, wParam, lParam);
    case WM_SETFOCUS:
        focusDialog();
        return 0;
    case WM_CLOSE:
        m_editor.close();
        DestroyWindow(m_window);
        return 0;
    case WM_DESTROY:
        m_window = nullptr;
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

HWND EditorWindow::dialog() const {
    return m_window ? GetWindow(m_window, GW_CHILD) : nullptr;
}

void EditorWindow::rememberFocus() {
    const HWND focused = GetFocus();
    if (IsChild(m_window, focused)) m_focused = focused;
}

void EditorWindow::focusDialog() const {
    const HWND child = dialog();
    if (child) SetFocus(IsChild(child, m_focused) ? m_focused : GetNextDlgTabItem(child, nullptr, FALSE));
}

void EditorWindow::onTimer() {
    const double now = secondsSinceStart();
    if (m_options.sweep) m_editor.setParameter(*m_options.sweep, sweepAt(now));
    m_editor.idle();
    if (!m_options.seconds || now < *m_options.seconds) return;
    try {
        if (m_options.screenshot) takeScreenshot();
    } catch (...) {
        m_failure = std::current_exception();
    }
    PostMessageW(m_window, WM_CLOSE, 0, 0);
}

void EditorWindow::takeScreenshot() const {
    // Some systems mark the control with the keyboard focus. Remove the focus, so that pictures show no mark.
    SetFocus(nullptr);
    RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    writeScreenshot(m_window, *m_options.screenshot);
}

void showEditor(HostedEditor& editor, const WindowOptions& options) {
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_BAR_CLASSES;
    InitCommonControlsEx(&controls);
    EditorWindow window(editor, options);
    window.run();
}

std::string libraryBesideProgram() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string program = path;
    return program.substr(0, program.rfind('\\') + 1) + "Parametric Equalizer.dll";
}

} // namespace eq
