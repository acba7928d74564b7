#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>

namespace eq {

/// Returns true for a place that receives bytes and is never replaced: a pipe, a device, or a path that names a
/// descriptor of this process, such as /dev/stdout. The descriptor may also refer to a file.
[[nodiscard]] bool isStream(const std::filesystem::path& place);

/// Opens a place for writing if `isStream` returns true for it. A descriptor keeps its position and its mode, for
/// example the append mode of `>>`. Throws FileError.
[[nodiscard]] FileDescriptor openStream(const std::filesystem::path& place);

} // namespace eq
