#pragma once

#include <filesystem>
#include <optional>

namespace eq {

/// Returns the number of the descriptor of this process that a path names, such as 1 for /dev/stdout, /dev/fd/1 and
/// links to these paths. Returns nothing for any other path. Do not open a path that names a descriptor: if the
/// descriptor refers to a file, the new descriptor has another position and another mode.
[[nodiscard]] std::optional<int> descriptorNamedBy(std::filesystem::path place);

/// Returns whether a path, such as /dev/stdout, names a descriptor that refers to the same file, pipe or device as
/// standard output.
[[nodiscard]] bool isStandardOutput(const std::filesystem::path& place);

} // namespace eq
