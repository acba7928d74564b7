#pragma once

// Paths and searches in folders. The separator in paths is '/'.

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

/// Starts a search in one folder and returns the first entry; entries are in alphabetical order. The only supported
/// pattern is '*' and a fixed end of the name, which is compared without regard to case.
HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA found) noexcept;
BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA found) noexcept;
BOOL WINAPI FindClose(HANDLE search) noexcept;

/// Copies the path of an existing file or folder unchanged, because short names do not exist here.
DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size) noexcept;
}
