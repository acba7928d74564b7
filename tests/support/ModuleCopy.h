#pragma once

// A module that is loaded from a place and under a name that a test chooses.

#include "platform/win32.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <filesystem>
#include <stdexcept>
#include <string>

/// Copies the empty module (EQ_EMPTY_MODULE) to `path` and loads it there; unloads it at the end.
class ModuleCopy {
public:
    explicit ModuleCopy(const std::string& path) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::filesystem::copy_file(EQ_EMPTY_MODULE, path);
#ifdef _WIN32
        m_handle = LoadLibraryA(path.c_str());
#else
        m_library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!m_library) throw std::runtime_error(dlerror());
        const auto inside = static_cast<const char*>(dlsym(m_library, "insideTheModule"));
        GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           inside, &m_handle);
#endif
        if (!m_handle) throw std::runtime_error("cannot load " + path);
    }
    ~ModuleCopy() {
#ifdef _WIN32
        FreeLibrary(m_handle);
#else
        dlclose(m_library);
#endif
    }
    ModuleCopy(const ModuleCopy&) = delete;
    ModuleCopy& operator=(const ModuleCopy&) = delete;

    [[nodiscard]] HMODULE handle() const {
        return m_handle;
    }

private:
#ifndef _WIN32
    void* m_library = nullptr;
#endif
    HMODULE m_handle = nullptr;
};
