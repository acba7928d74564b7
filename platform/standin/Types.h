#pragma once

// The basic types of Win32, and constants that several areas use.

#include <cstddef>
#include <cstdint>

// Calling conventions exist on 32-bit Windows only. Only macros can remove them from declarations.
#define WINAPI
#define CALLBACK

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using SHORT = std::int16_t;
using CHAR = char;
using SIZE_T = std::size_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;

using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPBOOL = BOOL*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;

namespace eq::standin {

template <typename Handle>
Handle handleOfNumber(std::uintptr_t number) noexcept {
    return reinterpret_cast<Handle>(number); // NOLINT(performance-no-int-to-ptr)
}

} // namespace eq::standin

using HANDLE = void*;
using HINSTANCE = struct StandinModule*;
using HMODULE = HINSTANCE;
using HWND = struct StandinWindow*;
using HKEY = struct StandinKey*;
using FARPROC = INT_PTR(WINAPI*)();

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
inline constexpr int MAX_PATH = 260;
inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline const HANDLE INVALID_HANDLE_VALUE = eq::standin::handleOfNumber<HANDLE>(~ULONG_PTR{0});

constexpr WORD LOWORD(DWORD_PTR value) noexcept {
    return static_cast<WORD>(value & 0xFFFF);
}

constexpr WORD HIWORD(DWORD_PTR value) noexcept {
    return static_cast<WORD>(value >> 16 & 0xFFFF);
}
