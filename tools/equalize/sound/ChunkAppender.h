#pragma once

#include "tools/equalize/sound/ContainerChunks.h"
#include "tools/equalize/sound/FileBytes.h"

#include <cstdint>
#include <string_view>

namespace eq {

/// Adds chunks after the last chunk of a complete WAV, RF64 or AIFF file.
class ChunkAppender {
public:
    /// Prepares a file for new chunks. Throws FileError if the file is of another kind.
    explicit ChunkAppender(const FileBytes& file);

    /// Copies a chunk of the file `source`. The size of the chunk must fit into 32 bits. Throws FileError.
    void append(const FileBytes& source, const Chunk& chunk);
    /// Adds a chunk with this identifier and these contents. Throws FileError.
    void append(std::string_view id, std::string_view contents);

    /// Writes the size of the file into its header. If the file is too long for this field, the size is wrong. Also
    /// clears the time in a PEAK chunk, which libsndfile writes into RF64 files, so that equal sounds become equal
    /// files.
    void finish();

private:
    void writeHeader(std::string_view id, std::uint64_t size);
    void pad();

    FileBytes m_file;
    ContainerChunks m_chunks;
    std::uint64_t m_end;
};

} // namespace eq
