#pragma once

// The system's data about languages.

#include "platform/standin/Types.h"

using LCID = DWORD;
using LCTYPE = DWORD;

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCTYPE LOCALE_SDECIMAL = 0x000E;
inline constexpr LCTYPE LOCALE_IDEFAULTANSICODEPAGE = 0x1004;

constexpr WORD PRIMARYLANGID(WORD language) noexcept {
    return language & 0x3FF;
}

extern "C" {

/// Supports LOCALE_IDEFAULTANSICODEPAGE only. `locale` is a language id.
int WINAPI GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size) noexcept;

/// Supports LOCALE_SDECIMAL and LOCALE_USER_DEFAULT only. LC_ALL, LC_NUMERIC or LANG names the user's locale.
int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR buffer, int size) noexcept;
}
