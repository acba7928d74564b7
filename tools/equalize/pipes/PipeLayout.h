#pragma once

#include "tools/equalize/pipes/PipeSource.h"

#include <bit>
#include <cstdint>

namespace eq {

/// Describes how to read a sound from a pipe.
struct PipeLayout {
    enum class Reading {
        InOrder, ///< from the first byte to the last
        Spooled, ///< from a temporary copy: the format needs backward seeks, or its sound begins after the kept bytes
    };
    Reading reading = Reading::Spooled;
    std::uint64_t soundBegin = 0; ///< in bytes; 0 if the decoder finds the sound
    /// The next three values are 0 if the header does not state the size of the sound in bytes.
    std::uint64_t frameBytes = 0;
    std::uint64_t soundSize = 0;
    std::uint64_t sizePosition = 0;
    std::endian order = std::endian::little;
    bool hasChunks = false; ///< chunks may follow the sound
    bool isMpeg = false;    ///< libmpg123 must decode the pipe: libsndfile would read beyond its own buffer
};

/// Returns the layout of a sound in a pipe from the pipe's first bytes. WAV, AU, FLAC, Ogg Vorbis, Opus and MPEG can be
/// read in order; all other formats are spooled. Throws FileError if the pipe cannot be read.
[[nodiscard]] PipeLayout layoutOf(PipeSource& source);

} // namespace eq
