#pragma once

#include <filesystem>
#include <optional>

namespace eq {

/// Returns the descriptor of this process that a path names, such as 1 for /dev/stdout, /dev/fd/1 and links to them.
/// Such a descriptor may refer to a file, which must not be opened once more: its position and its mode would be lost.
[[nodiscard]] std::optional<int> descriptorNamedBy(std::filesystem::path place);

/// Returns whether a path names a descriptor that refers to the same as standard output, such as /dev/stdout.
[[nodiscard]] bool isStandardOutput(const std::filesystem::path& place);

} // namespace eq
