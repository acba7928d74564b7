#include "tests/stress/HostWindows.h"

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

void* makeHostWindow() {
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_BAR_CLASSES;
    InitCommonControlsEx(&controls);
    return CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

void destroyHostWindow(void* window) {
    DestroyWindow(static_cast<HWND>(window));
}

int countChildren(void* window) {
    int count = 0;
    for (HWND child = GetWindow(static_cast<HWND>(window), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        ++count;
    return count;
}

#ifdef _WIN32
static BOOL CALLBACK countOne(HWND, LPARAM counter) {
    ++*reinterpret_cast<int*>(counter);
    return TRUE;
}
int countWindows() {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), countOne, reinterpret_cast<LPARAM>(&count));
    return count;
}
#else
int countWindows() {
    return static_cast<int>(standin::liveWindows());
}
#endif

void pumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}
