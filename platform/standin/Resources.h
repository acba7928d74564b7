#pragma once

// Resources of modules. A module's compiled resources (a .res file) lie in its read-only data; see ModuleResources.h.

#include "platform/standin/Types.h"

using HRSRC = struct StandinResource*;
using HGLOBAL = void*;

inline LPSTR MAKEINTRESOURCEA(UINT_PTR id) noexcept {
    return eq::standin::handleOfNumber<LPSTR>(static_cast<WORD>(id));
}
inline LPWSTR MAKEINTRESOURCEW(UINT_PTR id) noexcept {
    return eq::standin::handleOfNumber<LPWSTR>(static_cast<WORD>(id));
}

extern "C" {

/// Gives back what it is given: the handle of a loaded resource is the address of its bytes.
LPVOID WINAPI LockResource(HGLOBAL resource) noexcept;

DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource) noexcept;
}

namespace eq::standin::system {

// The system's own functions, which are found by name.

/// A null module is the program. If no resource has the requested language, returns one of its primary language, then a
/// neutral one. For the neutral language, also returns one of the system's language, then one in US English. The text
/// "#141" is the number 141. Narrow texts are in the ANSI code page.
HRSRC WINAPI FindResourceExA(HMODULE module, LPCSTR type, LPCSTR name, WORD language) noexcept;
HRSRC WINAPI FindResourceExW(HMODULE module, LPCWSTR type, LPCWSTR name, WORD language) noexcept;

HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource) noexcept;

} // namespace eq::standin::system
