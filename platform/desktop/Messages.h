#pragma once

// Messages to windows, and the queues of threads.

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

/// To windows of the calling thread; refused for those of others, with ERROR_WINDOW_OF_OTHER_THREAD.
LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Windows here know one width of text, so this is the wide form, too.
LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Does nothing: texts are set and asked for without messages.
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// A null window posts to the calling thread itself.
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Takes the thread's next message, of whichever window and kind; nothing else is supported.
BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT removal) noexcept;
LRESULT WINAPI DispatchMessageW(const MSG* message) noexcept;
}
