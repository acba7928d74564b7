#pragma once

#include "tools/equalize/pipes/PipeSource.h"

#include <bit>
#include <cstdint>

namespace eq {

/// How a sound is read from a pipe.
struct PipeLayout {
    enum class Reading {
        InOrder, ///< from the first byte to the last
        Spooled, ///< as a file: the format needs steps back, or more than the kept bytes come before its sound
    };
    Reading reading = Reading::Spooled;
    std::uint64_t soundBegin = 0; ///< 0 if a decoder finds it
    /// Of a format whose header states the size of the sound in bytes; 0 for others.
    std::uint64_t frameBytes = 0;
    std::uint64_t soundSize = 0;
    std::uint64_t sizePosition = 0;
    std::endian order = std::endian::little;
    bool hasChunks = false; ///< after the sound, too
    bool isMpeg = false;    ///< libsndfile must not read it from a pipe: it reads beyond its own buffer
};

/// Returns the layout of WAV, AU, FLAC, Ogg Vorbis, Opus and MPEG. All others are spooled.
[[nodiscard]] PipeLayout layoutOf(PipeSource& source);

} // namespace eq
