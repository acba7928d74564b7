#pragma once

#include "plugin/base/AEffect.h"

#include <filesystem>
#include <memory>
#include <mutex>

namespace eq {

/// The effect's library, loaded as a host loads it. The object must outlive the instances that it creates.
class EffectLibrary {
public:
    /// Loads the library. Throws FileError if this process cannot load the file, or if it has no export "main".
    explicit EffectLibrary(const std::filesystem::path& file);

    /// Returns the path of the library: in the folder of this program, or else in a folder of an installation. Throws
    /// FileError if the library is in none of them.
    [[nodiscard]] static std::filesystem::path defaultPlace();

    EffectLibrary(const EffectLibrary&) = delete;
    EffectLibrary& operator=(const EffectLibrary&) = delete;

    /// Returns a new instance, which the caller must end with `effClose`. Any thread may call this function. Throws
    /// FileError if the library returns no instance, or an instance of another effect.
    [[nodiscard]] AEffect* makeInstance() const;

private:
    struct Unloader {
        void operator()(void* library) const;
    };

    std::filesystem::path m_file;
    std::unique_ptr<void, Unloader> m_library;
    EffectMainProc m_main;
    mutable std::mutex m_mainInUse; ///< permits one call of `m_main` at a time, as hosts do
};

} // namespace eq
