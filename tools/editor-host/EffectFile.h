#pragma once

#include "plugin/base/AEffect.h"

#include <string>

namespace eq {

/// An effect's library, loaded while the object lives. Each platform defines it.
class EffectFile {
public:
    /// Throws FileError, with the system's reason.
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
