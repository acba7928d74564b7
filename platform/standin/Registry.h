#pragma once

// A small, fixed, read-only registry. Environment variables supply its values:
//
//   HKEY_LOCAL_MACHINE\Software\Tavrin\TuneBench\2.0           "Language", REG_DWORD: TUNEBENCH_LANGUAGE, in decimal
//   HKEY_USERS\.Default\Control Panel\International            "Locale", REG_SZ: eight hexadecimal digits of the
//   HKEY_CURRENT_USER\Control Panel\International              language id that LC_ALL, LC_MESSAGES or LANG names
//
// There are no other values. Wide queries return numbers only.

#include "platform/standin/System.h"
#include "platform/standin/Types.h"

using REGSAM = DWORD;
using LSTATUS = LONG;

inline const HKEY HKEY_CURRENT_USER = eq::standin::handleOfNumber<HKEY>(0x80000001);
inline const HKEY HKEY_LOCAL_MACHINE = eq::standin::handleOfNumber<HKEY>(0x80000002);
inline const HKEY HKEY_USERS = eq::standin::handleOfNumber<HKEY>(0x80000003);

inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

extern "C" {

/// Opens a key. No key can be created.
LSTATUS WINAPI RegCreateKeyExW(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                               LPSECURITY_ATTRIBUTES security, HKEY* key, LPDWORD disposition) noexcept;
LSTATUS WINAPI RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM access, HKEY* key) noexcept;
LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                LPDWORD size) noexcept;
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                LPDWORD size) noexcept;
LSTATUS WINAPI RegCloseKey(HKEY key) noexcept;
}
