#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace eq {

/// Bytes that a reader of a file should use in place of the file's own bytes at `position`.
struct HeaderCorrection {
    std::uint64_t position;
    std::string bytes;
};

/// The size in bytes that a header states for a file or for its sound, and the size that is present.
struct SoundDataSize {
    std::uint64_t promised;
    std::uint64_t present;
    /// True if the header leaves the size open. The sound then ends with the file, and `corrections` put the real sizes
    /// into the header.
    bool isOpen = false;
    std::vector<HeaderCorrection> corrections = {};
};

/// Returns the size that the header of a WAV, RF64, W64, AIFF, AU or CAF file states, and the size that is present.
/// Returns nothing for other kinds of files, and for a path that does not name a regular file. Throws FileError if the
/// size is damaged and the end of the sound is not certain.
///
/// libsndfile does not report these faults. If a file is cut off, libsndfile reads the part that exists, and reports no
/// error. If a program wrote the file into a pipe and could not fill in the size, libsndfile finds no sound.
[[nodiscard]] std::optional<SoundDataSize> soundDataSizeOf(const std::string& file);

/// Returns whether a header that states `frames` frames leaves the length open. Its size in bytes is then a value that
/// programs write into a pipe.
[[nodiscard]] bool isPlaceholderLength(std::uint64_t frames, std::uint64_t frameBytes);

} // namespace eq
