#pragma once

#include "platform/win32.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace eq {

/// Keeps a library loaded for the life of the object. Throws std::runtime_error if the library cannot be loaded.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const std::string& path)
        : m_handle(load(std::filesystem::path(path).make_preferred().string().c_str())) {
        if (!m_handle) throw std::runtime_error("cannot load " + path);
    }
    ~LoadedLibrary() { Unload(m_handle); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    /// Returns the export with this name, or null.
    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(Symbol(m_handle, name)));
    }

private:
#ifdef _WIN32
    static inline const auto load = LoadLibraryA;
    static inline const auto Unload = FreeLibrary;
    static inline const auto Symbol = GetProcAddress;
#else
    static void* load(const char* path) {
        return dlopen(path, RTLD_NOW | RTLD_LOCAL);
    }
    static inline const auto Unload = dlclose;
    static inline const auto Symbol = dlsym;
#endif
    const decltype(load("")) m_handle;
};

} // namespace eq
