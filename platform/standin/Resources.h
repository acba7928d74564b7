#pragma once

// Resources of modules. A module's compiled resources (a .res file) are in its read-only data; see ModuleResources.h.

#include "platform/ReplacedFunctions.h"
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

/// Returns its argument, because the handle of a loaded resource is the address of its bytes.
LPVOID WINAPI LockResource(HGLOBAL resource) noexcept;

DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource) noexcept;
}

namespace eq::standin::system {

// The system functions of kernel32, which only a look-up by name finds.
//
// FindResourceExA and FindResourceExW search the languages in this order: the requested language, its primary language,
// neutral. A request for neutral continues with the system's language, its primary language, and US English. A null
// module means the program. The name "#141" means the number 141. Narrow texts are in the ANSI code page.

#define EQ_IN_kernel32(DECLARATION) DECLARATION;
#define EQ_IN_user32(DECLARATION)
#define EQ_IN_comctl32(DECLARATION)
#define EQ_DECLARE(MODULE, RESULT, NAME, PARAMETERS, BYTES) EQ_IN_##MODULE(RESULT WINAPI NAME PARAMETERS noexcept)
EQ_REPLACED_FUNCTIONS(EQ_NO_ROW, EQ_DECLARE)
#undef EQ_DECLARE
#undef EQ_IN_comctl32
#undef EQ_IN_user32
#undef EQ_IN_kernel32

} // namespace eq::standin::system
