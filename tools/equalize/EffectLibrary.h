#pragma once

#include "plugin/base/AEffect.h"

#include <filesystem>
#include <memory>
#include <mutex>

namespace eq {

/// The effect's library, loaded as a host loads it. It must outlive the instances that come from it.
class EffectLibrary {
public:
    /// Throws FileError if the file is no library that this process can load, or has no export "main".
    explicit EffectLibrary(const std::filesystem::path& file);

    /// The library in the folder of this program, or else where it is installed: in `../lib/vst`. Throws FileError if
    /// it is in neither.
    [[nodiscard]] static std::filesystem::path defaultPlace();

    EffectLibrary(const EffectLibrary&) = delete;
    EffectLibrary& operator=(const EffectLibrary&) = delete;

    /// Any thread may call this. Returns a new instance, to be ended with `effClose`. Throws FileError if the library
    /// makes no instance, or an instance of another effect.
    [[nodiscard]] AEffect* makeInstance() const;

private:
    struct Unloader {
        void operator()(void* library) const;
    };

    std::filesystem::path m_file;
    std::unique_ptr<void, Unloader> m_library;
    EffectMainProc m_main;
    mutable std::mutex m_mainInUse; ///< hosts make instances in one thread
};

} // namespace eq
