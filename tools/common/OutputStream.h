#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>

namespace eq {

/// Returns whether a place receives bytes and is never replaced: a descriptor such as standard output, whatever it
/// refers to, a pipe, or a device.
[[nodiscard]] bool isStream(const std::filesystem::path& place);

/// Opens such a place for writing. The position and the mode of a descriptor stay, such as that of `>>`. Throws
/// FileError.
[[nodiscard]] FileDescriptor openStream(const std::filesystem::path& place);

} // namespace eq
