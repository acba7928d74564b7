#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// A family of file formats. Chunks can be copied byte for byte between files of one family.
enum class ChunkFamily {
    Riff, ///< WAV and RF64
    Rifx, ///< WAV with the most significant byte first
    Aiff,
};

struct Chunk {
    std::string id;
    std::uint64_t position; ///< of the contents, in bytes
    std::uint64_t size;     ///< without the byte that pads an odd size
};

/// The chunks of a WAV, RF64 or AIFF file, in the order of the file.
///
///     RIFF size WAVE | identifier size contents [pad] | identifier size contents [pad] | ...
class ContainerChunks {
public:
    /// Reads the chunks of a file. Returns nothing for other kinds of files. If `isSoundOpen` is true, the sound
    /// extends to the end of the file, and the size of its chunk is ignored. Throws FileError.
    [[nodiscard]] static std::optional<ContainerChunks> read(const FileBytes& file, bool isSoundOpen);

    [[nodiscard]] ChunkFamily family() const { return m_family; }
    [[nodiscard]] const std::vector<Chunk>& all() const { return m_chunks; }
    /// Returns the chunks that are neither the sound, nor its format, nor padding.
    [[nodiscard]] std::vector<Chunk> descriptions() const;
    /// Returns the chunk with an ID3v2 tag, or null.
    [[nodiscard]] const Chunk* tag() const;
    /// Returns the identifier of the chunk that the end of the file cuts off, or nothing.
    [[nodiscard]] const std::optional<std::string>& cutOff() const { return m_cutOff; }

private:
    friend class ChunkAppender;
    ContainerChunks(const FileBytes& file, ChunkFamily family, bool hasLongSizes, bool isSoundOpen);

    [[nodiscard]] std::endian byteOrder() const {
        return m_family == ChunkFamily::Riff ? std::endian::little : std::endian::big;
    }

    ChunkFamily m_family;
    bool m_hasLongSizes; ///< true if a ds64 chunk contains sizes of 64 bits
    std::vector<Chunk> m_chunks;
    std::optional<std::string> m_cutOff;
};

} // namespace eq
