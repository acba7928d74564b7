#pragma once

#include "platform/win32.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#ifndef _WIN32
#include <dlfcn.h>
#endif

/// A library that is loaded while this object lives. Throws std::runtime_error if it cannot be.
class LoadedLibrary {
public:
#ifdef _WIN32
    explicit LoadedLibrary(std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        handle = LoadLibraryA(path.c_str());
        if (!handle) throw std::runtime_error("cannot load " + path);
    }
    ~LoadedLibrary() {
        FreeLibrary(handle);
    }

    [[nodiscard]] HMODULE module() const {
        return handle;
    }

    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(handle, name)));
    }

private:
    HMODULE handle;
#else
    explicit LoadedLibrary(const std::string& path) : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (!handle) throw std::runtime_error(dlerror());
    }
    ~LoadedLibrary() {
        dlclose(handle);
    }

    /// The export of that name, or null.
    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(dlsym(handle, name));
    }

private:
    void* handle;
#endif

public:
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
};
