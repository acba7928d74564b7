#pragma once

// Modules. A module is a loaded program or shared object, and its handle is the address where it is loaded.

#include "platform/standin/Types.h"

#include <atomic>
#include <string_view>

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x00000002;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x00000004;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;

extern "C" {

/// Null names the program itself. By name only the system's own libraries are found.
HMODULE WINAPI GetModuleHandleA(LPCSTR name) noexcept;
HMODULE WINAPI GetModuleHandleW(LPCWSTR name) noexcept;

/// Finds the module that contains an address. Other ways of asking are refused.
BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module) noexcept;

/// Finds functions of the system's own libraries.
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) noexcept;

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size) noexcept;
BOOL WINAPI DisableThreadLibraryCalls(HMODULE module) noexcept;
}

namespace eq::standin {

/// The look-up of system libraries and their functions by name.
struct SystemLibraries {
    /// Return null if the process has no such library or function.
    HMODULE (*findLibrary)(std::string_view name) noexcept;
    FARPROC (*findFunction)(HMODULE library, std::string_view name) noexcept;
};

/// Supplied by platform/desktop. Null in products, where no system library is found by name.
extern std::atomic<const SystemLibraries*> systemLibraries;

} // namespace eq::standin
