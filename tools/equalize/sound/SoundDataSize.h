#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace eq {

/// Bytes that a reader of a file should see in place of those in the file.
struct HeaderCorrection {
    std::uint64_t position;
    std::string bytes;
};

/// How many bytes should be in a file, or in its sound, and how many are there.
struct SoundDataSize {
    std::uint64_t promised;
    std::uint64_t present;
    /// The header leaves the size open: the sound ends with the file, and `corrections` put the real sizes into the
    /// header.
    bool isOpen = false;
    std::vector<HeaderCorrection> corrections = {};
};

/// Returns what the header of a WAV, RF64, W64, AIFF, AU or CAF file promises: libsndfile silently reads what is
/// there, and finds no sound where a program that wrote into a pipe could not fill in a size. Nothing for other kinds,
/// and for what is no regular file. Throws FileError if the size is damaged and the sound has no certain end.
[[nodiscard]] std::optional<SoundDataSize> soundDataSizeOf(const std::string& file);

/// Whether a header of `frames` frames leaves the length open: the size in bytes is one that programs write into a
/// pipe.
[[nodiscard]] bool isPlaceholderLength(std::uint64_t frames, std::uint64_t frameBytes);

} // namespace eq
