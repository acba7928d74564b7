#pragma once

// Messages to windows, the queues of threads, and the keyboard focus.

#include "platform/standin/Windowing.h"

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_MOVE = 0x0003;
inline constexpr UINT WM_SIZE = 0x0005;
inline constexpr UINT WM_SETFOCUS = 0x0007;
inline constexpr UINT WM_KILLFOCUS = 0x0008;
inline constexpr UINT WM_ENABLE = 0x000A;
inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_GETTEXT = 0x000D;
inline constexpr UINT WM_GETTEXTLENGTH = 0x000E;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_SHOWWINDOW = 0x0018;
inline constexpr UINT WM_CTLCOLOR = 0x0019;
inline constexpr UINT WM_NEXTDLGCTL = 0x0028;
inline constexpr UINT WM_VKEYTOITEM = 0x002E;
inline constexpr UINT WM_CHARTOITEM = 0x002F;
inline constexpr UINT WM_SETFONT = 0x0030;
inline constexpr UINT WM_GETFONT = 0x0031;
inline constexpr UINT WM_QUERYDRAGICON = 0x0037;
inline constexpr UINT WM_COMPAREITEM = 0x0039;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_NCCREATE = 0x0081;
inline constexpr UINT WM_NCDESTROY = 0x0082;
inline constexpr UINT WM_GETDLGCODE = 0x0087;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_SYSKEYDOWN = 0x0104;
inline constexpr UINT WM_SYSKEYUP = 0x0105;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_HSCROLL = 0x0114;
inline constexpr UINT WM_VSCROLL = 0x0115;
inline constexpr UINT WM_ENTERIDLE = 0x0121;
inline constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
inline constexpr UINT WM_CTLCOLOREDIT = 0x0133;
inline constexpr UINT WM_CTLCOLORLISTBOX = 0x0134;
inline constexpr UINT WM_CTLCOLORBTN = 0x0135;
inline constexpr UINT WM_CTLCOLORDLG = 0x0136;
inline constexpr UINT WM_CTLCOLORSCROLLBAR = 0x0137;
inline constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
inline constexpr UINT WM_PARENTNOTIFY = 0x0210;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT WM_APP = 0x8000;

inline constexpr UINT BM_SETSTYLE = 0x00F4;
inline constexpr UINT BM_CLICK = 0x00F5;
inline constexpr int BN_CLICKED = 0;

inline constexpr UINT PM_NOREMOVE = 0x0000;
inline constexpr UINT PM_REMOVE = 0x0001;

constexpr WPARAM MAKEWPARAM(DWORD_PTR low, DWORD_PTR high) noexcept {
    return LOWORD(low) | static_cast<DWORD>(LOWORD(high)) << 16;
}

constexpr LPARAM MAKELPARAM(DWORD_PTR low, DWORD_PTR high) noexcept {
    return static_cast<LPARAM>(MAKEWPARAM(low, high));
}

extern "C" {

/// To windows of the calling thread; refused for those of others, with ERROR_WINDOW_OF_OTHER_THREAD. The A form
/// converts texts of WM_SETTEXT and WM_GETTEXT.
LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Windows here know one width of text, so the two differ in nothing.
LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
LRESULT WINAPI CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
/// Keeps the window's text, and ends a window that is closed.
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// A null window posts to the calling thread itself.
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT removal) noexcept;
/// Waits until something is posted.
BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT first, UINT last) noexcept;
/// There is no keyboard layout: no key makes a character.
BOOL WINAPI TranslateMessage(const MSG* message) noexcept;
LRESULT WINAPI DispatchMessageW(const MSG* message) noexcept;

HWND WINAPI SetFocus(HWND window) noexcept;
HWND WINAPI GetFocus() noexcept;

/// The keys that the calling thread takes as held, none at first.
SHORT WINAPI GetKeyState(int key) noexcept;
BOOL WINAPI GetKeyboardState(LPBYTE keys) noexcept;
BOOL WINAPI SetKeyboardState(LPBYTE keys) noexcept;
}
