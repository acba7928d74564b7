#include "platform/standin/Modules.h"

#include "platform/standin/Refuse.h"

#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/auxv.h>

namespace {

using eq::standin::refuse;

/// Returns the load address of the module that contains `address`, or null.
HMODULE moduleOf(const void* address) noexcept {
    Dl_info info{};
    return dladdr(address, &info) != 0 ? static_cast<HMODULE>(info.dli_fbase) : nullptr;
}

HMODULE programModule() noexcept {
    // AT_PHDR is the address of the program's headers, which are inside the program.
    return moduleOf(eq::standin::handleOfNumber<const void*>(getauxval(AT_PHDR)));
}

/// Returns the full path of the file from which a module was loaded, or an empty text if the handle is not a module.
std::string pathOf(HMODULE module) {
    Dl_info info{};
    if (dladdr(module, &info) == 0 || info.dli_fbase != module) return {};
    if (module == programModule()) return std::filesystem::read_symlink("/proc/self/exe").string();
    return std::filesystem::absolute(info.dli_fname).lexically_normal().string();
}

HMODULE findModule(std::string_view name) noexcept {
    const auto* const libraries = eq::standin::systemLibraries.load();
    const HMODULE module = libraries ? libraries->findLibrary(name) : nullptr;
    if (!module) SetLastError(ERROR_MOD_NOT_FOUND);
    return module;
}

/// Copies as much of a text as fits, and a terminator. Returns the text's length, or the buffer's size for a cut text.
DWORD copyCut(std::string_view text, LPSTR buffer, DWORD size) noexcept {
    const std::size_t fitting = text.copy(buffer, size - 1);
    buffer[fitting] = '\0';
    if (fitting == text.size()) return static_cast<DWORD>(fitting);
    return refuse(ERROR_INSUFFICIENT_BUFFER, size);
}

} // namespace

constinit std::atomic<const eq::standin::SystemLibraries*> eq::standin::systemLibraries = nullptr;

HMODULE WINAPI GetModuleHandleA(LPCSTR name) noexcept {
    return name ? findModule(name) : programModule();
}

HMODULE WINAPI GetModuleHandleW(LPCWSTR name) noexcept {
    return name ? refuse(ERROR_NOT_SUPPORTED) : programModule();
}

BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module) noexcept {
    if (!module || (flags & ~GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) != GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS)
        return refuse(ERROR_INVALID_PARAMETER);
    *module = moduleOf(address);
    return *module ? TRUE : refuse(ERROR_MOD_NOT_FOUND);
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) noexcept {
    const auto* const libraries = eq::standin::systemLibraries.load();
    const FARPROC function = libraries ? libraries->findFunction(module, name) : nullptr;
    if (!function) SetLastError(ERROR_PROC_NOT_FOUND);
    return function;
}

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size) noexcept try {
    if (size == 0) return refuse(ERROR_INSUFFICIENT_BUFFER);
    const std::string full = pathOf(module ? module : programModule());
    return full.empty() ? refuse(ERROR_MOD_NOT_FOUND) : copyCut(full, path, size);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL WINAPI DisableThreadLibraryCalls(HMODULE module) noexcept {
    // The stand-in never calls a library at the start or the end of a thread, so there is nothing to disable.
    if (module && moduleOf(module) == module) return TRUE;
    return refuse(ERROR_MOD_NOT_FOUND);
}
