#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace eq {

/// How many bytes should be in a file, or in its sound, and how many are there.
struct SoundDataSize {
    std::uint64_t promised;
    std::uint64_t present;
};

/// Reads what the header of a WAV, RF64, W64, AIFF or AU file promises: libsndfile silently takes what is there.
/// Nothing for other kinds, for headers that leave the size open, and for what is no regular file.
[[nodiscard]] std::optional<SoundDataSize> soundDataSizeOf(const std::string& file);

} // namespace eq
