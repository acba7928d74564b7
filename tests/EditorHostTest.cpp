#include "platform/win32.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

// Runs editor-host in a separate process, whose window receives key presses.

namespace eq {

namespace {

constexpr int QOfBand1 = 1044; // the first two controls in the dialog's tab order
constexpr int QOfBand2 = 1046;

template <typename Condition>
bool comesTrue(const Condition& condition) {
    for (int turn = 0; turn < 3000; ++turn) {
        if (condition()) return true;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(10);
    }
    return false;
}

bool becomesActive(HWND window) {
    return comesTrue([window] { return window && GetForegroundWindow() == window; });
}

void press(int key) {
    std::array<INPUT, 2> strokes{};
    for (INPUT& stroke : strokes) {
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = static_cast<WORD>(key);
    }
    strokes[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, strokes.data(), sizeof(INPUT));
}

class EditorHost : public testing::Test {
protected:
    EditorHost() {
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        const std::string program = std::filesystem::path(EQ_EDITOR_HOST_PATH).make_preferred().string();
        std::string command = "editor-host --set 9=0.25";
        EXPECT_TRUE(CreateProcessA(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                   &startup, &process));
        comesTrue([this] { return (window = find()) != nullptr; });
    }
    ~EditorHost() override {
        TerminateProcess(process.hProcess, 1); // if it still runs
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }

    /// Returns the visible window of the process, or null.
    [[nodiscard]] HWND find() const {
        for (HWND found = nullptr; (found = FindWindowExW(nullptr, found, L"EditorHost", nullptr)) != nullptr;) {
            DWORD owner = 0;
            GetWindowThreadProcessId(found, &owner);
            if (owner == process.dwProcessId && IsWindowVisible(found)) return found;
        }
        return nullptr;
    }
    [[nodiscard]] bool comesTo(int slider, LRESULT position) const {
        const HWND control = GetDlgItem(GetWindow(window, GW_CHILD), slider);
        return comesTrue([=] { return SendMessageW(control, TBM_GETPOS, 0, 0) == position; });
    }

    PROCESS_INFORMATION process{};
    HWND window = nullptr;
};

TEST_F(EditorHost, PassesKeysToTheDialogFromTheStartAndAfterAChangeOfWindows) {
    ASSERT_TRUE(becomesActive(window));
    press(VK_DOWN);
    EXPECT_TRUE(comesTo(QOfBand1, 26));
    press(VK_TAB);
    press(VK_DOWN);
    EXPECT_TRUE(comesTo(QOfBand2, 56));

    const HWND another = CreateWindowExW(0, L"STATIC", L"another", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99, 99,
                                         nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetForegroundWindow(another);
    ASSERT_TRUE(becomesActive(another));
    SetForegroundWindow(window);
    ASSERT_TRUE(becomesActive(window));
    for (const int key : {VK_RETURN, VK_ESCAPE, VK_DOWN}) press(key); // Return and Escape change nothing
    EXPECT_TRUE(comesTo(QOfBand2, 57));
    DestroyWindow(another);

    PostMessageW(window, WM_CLOSE, 0, 0);
    DWORD exitCode = 1;
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 30000), WAIT_OBJECT_0);
    GetExitCodeProcess(process.hProcess, &exitCode);
    EXPECT_EQ(exitCode, 0U);
}

} // namespace

} // namespace eq
