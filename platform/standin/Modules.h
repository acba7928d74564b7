#pragma once

// Modules. A module is a loaded program or shared object, and its handle is its load address.

#include "platform/standin/Types.h"

#include <atomic>
#include <string_view>

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x00000002;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x00000004;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;

extern "C" {

/// Returns the program for a null name, or a system library for its name. The W form refuses names.
HMODULE WINAPI GetModuleHandleA(LPCSTR name) noexcept;
HMODULE WINAPI GetModuleHandleW(LPCWSTR name) noexcept;

/// Finds the module that contains an address. Refuses other kinds of look-ups.
BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module) noexcept;

/// Returns a function of a system library, or null.
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) noexcept;

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size) noexcept;
BOOL WINAPI DisableThreadLibraryCalls(HMODULE module) noexcept;
}

namespace eq::standin {

/// A look-up of system libraries and their functions by name.
struct SystemLibraries {
    /// Both functions return null if the process has no such library or function.
    HMODULE (*findLibrary)(std::string_view name) noexcept;
    FARPROC (*findFunction)(HMODULE library, std::string_view name) noexcept;
};

/// The current look-up. platform/desktop sets it. It is null in products, where no system library is found by name.
extern std::atomic<const SystemLibraries*> systemLibraries;

} // namespace eq::standin
