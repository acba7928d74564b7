#pragma once

// Windows: objects with a class, an id, a text, a style and a size, in a tree.
//
// Nothing is drawn, and nobody points or types: there is no screen with places on it, no keyboard, no activation and no
// frame, so the client area is the whole window, and nothing tells a procedure of such things. A window belongs to the
// thread that made it, and other threads may ask about it and post to it, but not send to it or end it. Procedures get
// their messages in the wide form, whichever function names them.

#include "platform/desktop/Menus.h"
#include "platform/standin/Types.h"

using HFONT = void*;
using HICON = struct StandinIcon*;
using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct POINT {
    LONG x;
    LONG y;
};

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;

struct CREATESTRUCTW {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCWSTR lpszName;
    LPCWSTR lpszClass;
    DWORD dwExStyle;
};

inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_POPUP = 0x80000000;

inline constexpr int GWL_STYLE = -16;
inline constexpr int GWLP_WNDPROC = -4;
inline constexpr int GWLP_USERDATA = -21;

inline constexpr UINT GW_HWNDNEXT = 2;
inline constexpr UINT GW_CHILD = 5;

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOW = 5;

extern "C" {

/// Knows the classes "STATIC", "BUTTON", "EDIT", "#32770" and, once InitCommonControlsEx has registered it,
/// "msctls_trackbar32".
HWND WINAPI CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE module, LPVOID parameter) noexcept;
BOOL WINAPI DestroyWindow(HWND window) noexcept;
BOOL WINAPI ShowWindow(HWND window, int command) noexcept;

BOOL WINAPI IsWindow(HWND window) noexcept;
HWND WINAPI GetParent(HWND window) noexcept;
/// The next sibling, the first child, or the owner; top-level windows have no siblings.
HWND WINAPI GetWindow(HWND window, UINT relation) noexcept;
HWND WINAPI GetDlgItem(HWND window, int id) noexcept;
int WINAPI GetDlgCtrlID(HWND window) noexcept;

int WINAPI GetWindowTextW(HWND window, LPWSTR buffer, int size) noexcept;
BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text) noexcept;
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) noexcept;

BOOL WINAPI GetClientRect(HWND window, LPRECT rectangle) noexcept;

/// The style alone.
LONG WINAPI GetWindowLongW(HWND window, int index) noexcept;
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index) noexcept;
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept;
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value) noexcept;

/// Properties by name; upper and lower case are told apart.
BOOL WINAPI SetPropW(HWND window, LPCWSTR name, HANDLE value) noexcept;
HANDLE WINAPI GetPropW(HWND window, LPCWSTR name) noexcept;
}
