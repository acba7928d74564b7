#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// Returns whether libsndfile writes a format from its first byte to its last, except for the sizes in the header.
[[nodiscard]] bool isWrittenInOrder(int format);

/// Returns true for a format of plain samples. libsndfile writes such samples into the stream immediately. The bytes
/// that libsndfile writes after the last sample do not belong to the stream.
[[nodiscard]] bool isPlain(int format);

/// Returns the size in bytes of the header in front of the sound. Returns nothing if `bytes` does not contain the
/// complete header. In MPEG, the header is the first frame, which libsndfile fills in at the end.
[[nodiscard]] std::optional<std::size_t> streamHeaderSize(int format, std::string_view bytes);

/// Returns the header with its length filled in. WAV and AU headers get an open length, because nothing can be
/// corrected at the end. FLAC headers get the number of `frames`, if it is known. MPEG headers get the number or an
/// open length, and the number of samples that the encoder adds at both ends.
[[nodiscard]] std::string withStreamLength(std::string header, int format, std::optional<sf_count_t> frames);

} // namespace eq
