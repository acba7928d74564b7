#include "tests/stress/HostWindows.h"

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

namespace {

void* make() {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    return CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

void destroy(void* window) {
    DestroyWindow(static_cast<HWND>(window));
}

int children(void* window) {
    int count = 0;
    for (HWND child = GetWindow(static_cast<HWND>(window), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        ++count;
    return count;
}

int all() {
#ifdef _WIN32
    return 0;
#else
    return static_cast<int>(standin::liveWindows());
#endif
}

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

} // namespace

const HostWindows* hostWindows() {
    static constexpr HostWindows windows = {make, destroy, children, all, pump};
    return &windows;
}
