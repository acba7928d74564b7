#pragma once

#include "tools/equalize/sound/ContainerChunks.h"
#include "tools/equalize/sound/FileBytes.h"

#include <cstdint>
#include <string_view>

namespace eq {

/// Adds chunks after the last chunk of a complete WAV, RF64 or AIFF file.
class ChunkAppender {
public:
    /// Throws FileError if the file is of another kind.
    explicit ChunkAppender(const FileBytes& file);

    /// The size of `chunk` has at most 32 bits.
    void append(const FileBytes& source, const Chunk& chunk);
    void append(std::string_view id, std::string_view contents);

    /// Writes the size of the file into its header, and removes the time from a chunk PEAK, which an RF64
    /// file has, so that equal sounds become equal files. The size of a file that is too long for its kind is wrong.
    void finish();

private:
    void writeHeader(std::string_view id, std::uint64_t size);
    void pad();

    FileBytes m_file;
    ContainerChunks m_chunks;
    std::uint64_t m_end;
};

} // namespace eq
