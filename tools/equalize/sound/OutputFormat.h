#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <sndfile.h>

namespace eq {

/// The sample format that a user can ask for.
enum class SampleBits { Bits16, Bits24, Bits32, Float };

/// Rate, channels, container and sample format of an output at `place` for sound that comes in as `input`: the
/// container is that of the extension, and the input's without an extension; the sample format is the input's, or else
/// the best that the container takes. Throws UsageError for an unknown extension, and FileError if the container takes
/// no sample format.
///
/// `format`, if it is not empty, replaces the extension.
///
/// `bits` replaces the sample format, except in a lossy output, which has none. Throws UsageError if the container
/// does not take it.
[[nodiscard]] SF_INFO outputFormatFor(const std::filesystem::path& place, const SF_INFO& input,
                                      std::optional<SampleBits> bits = std::nullopt, const std::string& format = "");

/// Whether a format has this name, which is an extension.
[[nodiscard]] bool isFormatName(const std::string& name);

/// Whether the samples are compressed with loss by Ogg Vorbis, Opus or MPEG.
[[nodiscard]] bool isLossy(int format);
/// True for formats that take longer to decode and encode than to equalize.
[[nodiscard]] bool isCompressed(int format);

/// "WAV"
[[nodiscard]] std::string containerName(int format);

/// True for a file whose extension is one of an audio file.
[[nodiscard]] bool hasAudioExtension(const std::filesystem::path& file);

/// "WAV (Microsoft), 32 bit float"
[[nodiscard]] std::string formatName(int format);

/// Bits of the integers in which samples are stored; 0 for those that are stored as floats, or as a lossy form of
/// floats, and have no full scale.
[[nodiscard]] int integerBits(int format);

/// Returns 0 for formats in which a sample has no fixed size.
[[nodiscard]] int bytesPerSample(int format);

} // namespace eq
