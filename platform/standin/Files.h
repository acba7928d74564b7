#pragma once

// Paths and the enumeration of folders. Paths are written with '/'.

#include "platform/standin/Types.h"

inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x00000010;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x00000020;

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    CHAR cFileName[MAX_PATH];
};
using LPWIN32_FIND_DATAA = WIN32_FIND_DATAA*;

extern "C" {

/// Looks in one folder for the names that fit '*' and an end, in alphabetical order; case does not matter. Refuses
/// other patterns.
HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA found) noexcept;
BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA found) noexcept;
BOOL WINAPI FindClose(HANDLE search) noexcept;

/// There are no short names here: gives the path of an existing file or folder back.
DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size) noexcept;
}
