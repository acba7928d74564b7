#pragma once

#include <filesystem>
#include <string>

#include <sndfile.h>

namespace eq {

/// Rate, channels, container and sample format of an output at `place` for sound that comes in as `input`: the
/// container is that of the extension, and the input's if the extension is none that libsndfile knows; the sample
/// format is the input's, or else the best that the container takes. Throws FileError if it takes none.
[[nodiscard]] SF_INFO outputFormatFor(const std::filesystem::path& place, const SF_INFO& input);

/// "WAV (Microsoft), 32 bit float"
[[nodiscard]] std::string formatName(int format);

/// Bits of the integers in which samples are stored; 0 for those that are stored as floats, or as a lossy form of
/// floats, and have no full scale.
[[nodiscard]] int integerBits(int format);

/// Returns 0 for formats in which a sample has no fixed size.
[[nodiscard]] int bytesPerSample(int format);

/// Whether a decoder gets an approximation of the samples that were written.
[[nodiscard]] bool isLossy(int format);

} // namespace eq
