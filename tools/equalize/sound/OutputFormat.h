#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <sndfile.h>

namespace eq {

/// The sample formats that a user can choose.
enum class SampleBits { Bits16, Bits24, Bits32, Float };

/// Returns the rate, channels, container and sample format of an output at `place` for an input of the format `input`.
/// The extension of `place` determines the container. Without an extension, the container is that of the input. The
/// sample format is that of the input, or else the best one that the container can hold.
///
/// `format` replaces the extension if it is not empty. `bits` replaces the sample format, except in a lossy output.
///
/// Throws UsageError if the extension is unknown, or if the container cannot hold `bits`. Throws FileError if the
/// container cannot hold the channels at the rate, or cannot be written.
[[nodiscard]] SF_INFO outputFormatFor(const std::filesystem::path& place, const SF_INFO& input,
                                      std::optional<SampleBits> bits = std::nullopt, const std::string& format = "");

/// Returns whether `name` is the extension of a known format.
[[nodiscard]] bool isFormatName(const std::string& name);

/// Returns whether Ogg Vorbis, Opus or MPEG compresses the samples with loss.
[[nodiscard]] bool isLossy(int format);
/// Returns true for formats that need more time for decoding and encoding than for equalizing.
[[nodiscard]] bool isCompressed(int format);

/// Returns the name of the container, such as "WAV".
[[nodiscard]] std::string containerName(int format);

/// Returns whether the extension of a file is that of a known audio format.
[[nodiscard]] bool hasAudioExtension(const std::filesystem::path& file);

/// Returns the name of the container and of the sample format, such as "WAV (Microsoft), 32 bit float".
[[nodiscard]] std::string formatName(int format);

/// Returns the number of bits of integer samples. Returns 0 for floats and for lossy formats, which have no full scale.
[[nodiscard]] int integerBits(int format);

/// Returns the size of a sample in bytes, or 0 if the samples of the format have no fixed size.
[[nodiscard]] int bytesPerSample(int format);

} // namespace eq
