#pragma once

#include "plugin/base/AEffect.h"

#include <string>

namespace eq {

/// An effect's library, which is loaded while the object exists. Each platform implements this class.
class EffectFile {
public:
    /// Loads the library. Throws FileError with the system's message if the library cannot be loaded.
    explicit EffectFile(const std::string& path);
    ~EffectFile();
    EffectFile(const EffectFile&) = delete;
    EffectFile& operator=(const EffectFile&) = delete;

    /// Returns the export "main", or null.
    [[nodiscard]] EffectMainProc entry() const noexcept;

private:
    void* m_handle;
};

} // namespace eq
