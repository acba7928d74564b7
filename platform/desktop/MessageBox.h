#pragma once

// Message boxes. The stand-in writes them to standard error and answers OK.

#include "platform/standin/Types.h"

inline constexpr UINT MB_OK = 0x00000000;
inline constexpr UINT MB_ICONERROR = 0x00000010;
inline constexpr int IDOK = 1;
