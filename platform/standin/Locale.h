#pragma once

// What the system knows of languages.

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

/// Answers LOCALE_IDEFAULTANSICODEPAGE, for language ids.
int WINAPI GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size) noexcept;

/// Answers LOCALE_SDECIMAL, for LOCALE_USER_DEFAULT: the locale that LC_ALL, LC_NUMERIC or LANG names.
int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR buffer, int size) noexcept;
}
