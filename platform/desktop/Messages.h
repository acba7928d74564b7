#pragma once

// Messages to windows, and the message queues of threads.

#include "platform/desktop/Windowing.h"

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_CTLCOLOR = 0x0019;
inline constexpr UINT WM_VKEYTOITEM = 0x002E;
inline constexpr UINT WM_CHARTOITEM = 0x002F;
inline constexpr UINT WM_SETFONT = 0x0030;
inline constexpr UINT WM_GETFONT = 0x0031;
inline constexpr UINT WM_QUERYDRAGICON = 0x0037;
inline constexpr UINT WM_COMPAREITEM = 0x0039;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_NCDESTROY = 0x0082;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_HSCROLL = 0x0114;
inline constexpr UINT WM_VSCROLL = 0x0115;
inline constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
inline constexpr UINT WM_CTLCOLOREDIT = 0x0133;
inline constexpr UINT WM_CTLCOLORLISTBOX = 0x0134;
inline constexpr UINT WM_CTLCOLORBTN = 0x0135;
inline constexpr UINT WM_CTLCOLORDLG = 0x0136;
inline constexpr UINT WM_CTLCOLORSCROLLBAR = 0x0137;
inline constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT WM_APP = 0x8000;

inline constexpr UINT PM_REMOVE = 0x0001;

constexpr WPARAM MAKEWPARAM(DWORD_PTR low, DWORD_PTR high) noexcept {
    return LOWORD(low) | static_cast<DWORD>(LOWORD(high)) << 16;
}

constexpr LPARAM MAKELPARAM(DWORD_PTR low, DWORD_PTR high) noexcept {
    return static_cast<LPARAM>(MAKEWPARAM(low, high));
}

extern "C" {

/// Sends a message to a window of the calling thread. For a window of another thread returns 0 with
/// ERROR_WINDOW_OF_OTHER_THREAD.
LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Calls a window procedure. The stand-in has no W form: all its windows use wide texts, so both forms would do the
/// same.
LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Returns 0 and does nothing, because window texts are set and read without messages.
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// Posts a message to the thread of a window. A null window means the calling thread.
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Moves the calling thread's next message from its queue to `message`. Supports PM_REMOVE only, and no selection by
/// window or message.
BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT removal) noexcept;
LRESULT WINAPI DispatchMessageW(const MSG* message) noexcept;
}
