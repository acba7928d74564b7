#include "tests/stress/HostWindows.h"

#include "tests/support/TestWindows.h"

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

namespace eq {

const HostWindows* hostWindows() {
    static constexpr HostWindows windows = {
        .make = []() -> void* {
            readyCommonControls();
            return makeHostWindow();
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

} // namespace eq
