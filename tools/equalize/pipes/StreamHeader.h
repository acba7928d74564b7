#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// Whether libsndfile writes a format from its first byte to its last, except for sizes in the header.
[[nodiscard]] bool isWrittenInOrder(int format);

/// Whether libsndfile writes sound into the stream immediately, and nothing after it that belongs there.
[[nodiscard]] bool isPlain(int format);

/// Returns the size of the header in front of the sound, or nothing if `bytes` do not hold all of it. The header of an
/// MPEG stream is the frame that libsndfile fills in at the end.
[[nodiscard]] std::optional<std::size_t> streamHeaderSize(int format, std::string_view bytes);

/// Returns a header that says that the length is open, or the number of frames where the format has a place for it: in
/// FLAC, and in MPEG together with the samples that its coder adds at both ends.
[[nodiscard]] std::string withStreamLength(std::string header, int format, std::optional<sf_count_t> frames);

} // namespace eq
