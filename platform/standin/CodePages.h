#pragma once

// Conversion between bytes of a code page and UTF-16 code units.
//
// The code pages are UTF-8, and the single-byte and double-byte code pages that language files may name, if iconv has
// them. There are no best-fit characters: a character that a page lacks becomes the default character.

#include "platform/standin/Types.h"

#include <string>

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_UTF8 = 65001;

inline constexpr DWORD MB_PRECOMPOSED = 0x00000001;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x00000008;
inline constexpr DWORD WC_ERR_INVALID_CHARS = 0x00000080;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x00000400;

extern "C" {

/// Returns the ANSI code page: UTF-8, unless a test has set another code page.
UINT WINAPI GetACP() noexcept;
BOOL WINAPI IsDBCSLeadByte(BYTE byte) noexcept;
BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) noexcept;

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int textSize, LPWSTR buffer,
                               int bufferSize) noexcept;
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int textSize, LPSTR buffer, int bufferSize,
                               LPCSTR defaultCharacter, LPBOOL usedDefaultCharacter) noexcept;
}

namespace eq::standin {

/// Returns a text of the ANSI code page as 16-bit units.
std::wstring wideFromAnsi(LPCSTR text);

} // namespace eq::standin
