#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <cstdint>

namespace eq {

/// Returns the size in bytes of the tags at the end of an MPEG file: ID3v1, APE and Lyrics3v2, in any order.
[[nodiscard]] std::uint64_t trailingTagSize(const FileBytes& file);

} // namespace eq
