#include "tests/stress/HostWindows.h"

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

const HostWindows* hostWindows() {
    static constexpr HostWindows windows = {
        .make = []() -> void* {
            INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
            InitCommonControlsEx(&controls);
            return CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
        },
        .destroy = [](void* window) { DestroyWindow(static_cast<HWND>(window)); },
        .children =
            [](void* window) {
                int count = 0;
                for (HWND child = GetWindow(static_cast<HWND>(window), GW_CHILD); child; ++count)
                    child = GetWindow(child, GW_HWNDNEXT);
                return count;
            },
#ifndef _WIN32
        .all = standin::liveWindows,
#endif
        .pump =
            [] {
                MSG message;
                while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
            },
    };
    return &windows;
}
