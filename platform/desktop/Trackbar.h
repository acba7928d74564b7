#pragma once

// The trackbar: a range and a position in the range. No user moves it, so it sends no notifications.

#include "platform/desktop/Messages.h"

struct INITCOMMONCONTROLSEX {
    DWORD dwSize;
    DWORD dwICC;
};

inline constexpr DWORD ICC_BAR_CLASSES = 0x00000004;

inline constexpr UINT TBM_GETPOS = WM_USER;
inline constexpr UINT TBM_SETPOS = WM_USER + 5;
inline constexpr UINT TBM_SETRANGE = WM_USER + 6;

inline constexpr WORD TB_THUMBTRACK = 5;
inline constexpr WORD TB_ENDTRACK = 8;

extern "C" {

/// Registers the class "msctls_trackbar32" for ICC_BAR_CLASSES. Returns FALSE for any other class of controls. After
/// the first call, the library "comctl32" is in the process.
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes) noexcept;
}
