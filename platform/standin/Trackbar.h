#pragma once

// The trackbar: a range, a position, and the keys that move it.

#include "platform/standin/Messages.h"

struct INITCOMMONCONTROLSEX {
    DWORD dwSize;
    DWORD dwICC;
};

inline constexpr DWORD ICC_BAR_CLASSES = 0x00000004;

inline constexpr DWORD TBS_VERT = 0x0002;
inline constexpr DWORD TBS_BOTH = 0x0008;
inline constexpr DWORD TBS_NOTICKS = 0x0010;
inline constexpr DWORD TBS_DOWNISLEFT = 0x0400;

inline constexpr UINT TBM_GETPOS = WM_USER;
inline constexpr UINT TBM_GETRANGEMIN = WM_USER + 1;
inline constexpr UINT TBM_GETRANGEMAX = WM_USER + 2;
inline constexpr UINT TBM_SETPOS = WM_USER + 5;
inline constexpr UINT TBM_SETRANGE = WM_USER + 6;
inline constexpr UINT TBM_SETRANGEMIN = WM_USER + 7;
inline constexpr UINT TBM_SETRANGEMAX = WM_USER + 8;
inline constexpr UINT TBM_GETPAGESIZE = WM_USER + 22;
inline constexpr UINT TBM_GETLINESIZE = WM_USER + 24;

inline constexpr WORD TB_LINEUP = 0;
inline constexpr WORD TB_LINEDOWN = 1;
inline constexpr WORD TB_PAGEUP = 2;
inline constexpr WORD TB_PAGEDOWN = 3;
inline constexpr WORD TB_THUMBTRACK = 5;
inline constexpr WORD TB_TOP = 6;
inline constexpr WORD TB_BOTTOM = 7;
inline constexpr WORD TB_ENDTRACK = 8;

extern "C" {

/// Registers the class "msctls_trackbar32" for ICC_BAR_CLASSES; there are no other common controls. From the first call
/// on the library "comctl32" is in the process.
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes) noexcept;
}
