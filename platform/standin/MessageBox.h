#pragma once

// Message boxes: written to standard error, and taken as answered with OK.

#include "platform/standin/Types.h"

inline constexpr UINT MB_OK = 0x00000000;
inline constexpr UINT MB_ICONERROR = 0x00000010;
inline constexpr int IDOK = 1;

extern "C" {

/// Knows boxes with the one button OK, and refuses all others, for nobody is there to choose.
int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) noexcept;
}
