#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// Chunks of files of one family can be copied byte for byte between them.
enum class ChunkFamily {
    Riff, ///< WAV and RF64
    Rifx, ///< WAV with the upper byte first
    Aiff,
};

struct Chunk {
    std::string id;
    std::uint64_t position; ///< of the contents
    std::uint64_t size;     ///< without the byte that pads an odd size
};

/// The chunks of a WAV, RF64 or AIFF file, in the order of the file.
///
///     RIFF size WAVE | identifier size contents [pad] | identifier size contents [pad] | ...
class ContainerChunks {
public:
    /// Returns nothing for other kinds of files. If `isSoundOpen`, the sound reaches to the end of the file, whatever
    /// the size of its chunk says.
    [[nodiscard]] static std::optional<ContainerChunks> read(const FileBytes& file, bool isSoundOpen);

    [[nodiscard]] ChunkFamily family() const { return m_family; }
    [[nodiscard]] const std::vector<Chunk>& all() const { return m_chunks; }
    /// Returns the chunks that are neither the sound, nor its format, nor padding.
    [[nodiscard]] std::vector<Chunk> descriptions() const;
    /// Returns the chunk with an ID3v2 tag, or null.
    [[nodiscard]] const Chunk* tag() const;
    /// The identifier of a chunk that the end of the file cuts off.
    [[nodiscard]] const std::optional<std::string>& cutOff() const { return m_cutOff; }

private:
    friend class ChunkAppender;
    ContainerChunks(const FileBytes& file, ChunkFamily family, bool hasLongSizes, bool isSoundOpen);

    [[nodiscard]] std::endian byteOrder() const {
        return m_family == ChunkFamily::Riff ? std::endian::little : std::endian::big;
    }

    ChunkFamily m_family;
    bool m_hasLongSizes; ///< sizes of 64 bits in a chunk ds64
    std::vector<Chunk> m_chunks;
    std::optional<std::string> m_cutOff;
};

} // namespace eq
