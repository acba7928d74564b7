#pragma once

// Windows: a tree of objects with a class, an id, a text, a style and a size.
//
// Nothing is drawn, and there is no user input. Windows have no position, focus, activation or frame: the client area
// is the whole window, and procedures receive no messages about these properties. A window belongs to the thread that
// creates it. Other threads may query the window and post messages to it, but not send messages to it or destroy it.
// Procedures receive messages in the wide form, whether an A or a W function installs them.

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

/// Creates a window. The classes are "STATIC", "BUTTON", "EDIT", "#32770" and, after InitCommonControlsEx has
/// registered it, "msctls_trackbar32".
HWND WINAPI CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE module, LPVOID parameter) noexcept;
BOOL WINAPI DestroyWindow(HWND window) noexcept;
BOOL WINAPI ShowWindow(HWND window, int command) noexcept;

BOOL WINAPI IsWindow(HWND window) noexcept;
HWND WINAPI GetParent(HWND window) noexcept;
/// Returns the next sibling (GW_HWNDNEXT) or the first child (GW_CHILD), or null. Top-level windows have no siblings.
HWND WINAPI GetWindow(HWND window, UINT relation) noexcept;
HWND WINAPI GetDlgItem(HWND window, int id) noexcept;
int WINAPI GetDlgCtrlID(HWND window) noexcept;

int WINAPI GetWindowTextW(HWND window, LPWSTR buffer, int size) noexcept;
BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text) noexcept;
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) noexcept;

BOOL WINAPI GetClientRect(HWND window, LPRECT rectangle) noexcept;

/// Returns the low 32 bits of the value at a negative index, such as GWL_STYLE. Offsets into the extra bytes are
/// refused.
LONG WINAPI GetWindowLongW(HWND window, int index) noexcept;
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index) noexcept;
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value) noexcept;
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value) noexcept;

/// Sets or returns a property of a window. The names of properties are case-sensitive.
BOOL WINAPI SetPropW(HWND window, LPCWSTR name, HANDLE value) noexcept;
HANDLE WINAPI GetPropW(HWND window, LPCWSTR name) noexcept;
}
