#include "tools/equalize/sound/ContainerChunks.h"

#include "support/BinaryReader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace eq {
namespace {

constexpr std::uint64_t OuterHeaderSize = 12;
constexpr std::size_t ChunkHeaderSize = 8;
constexpr std::uint32_t SizeIsElsewhere = std::numeric_limits<std::uint32_t>::max();

/// Chunks that are not copied: libsndfile writes its own, or they are padding (JUNK, PAD and FLLR).
constexpr std::array<std::string_view, 9> OwnRiffChunks = {"fmt ", "data", "fact", "ds64", "PEAK",
                                                           "JUNK", "junk", "PAD ", "FLLR"};
constexpr std::array<std::string_view, 7> OwnAiffChunks = {"COMM", "SSND", "FVER", "PEAK", "JUNK", "PAD ", "FLLR"};

bool isIdentifier(std::string_view bytes) {
    return bytes.size() == 4 && std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool holdsSound(std::string_view id) {
    return id == "data" || id == "SSND";
}

/// Returns the sizes of 64 bits from the contents of a ds64 chunk, by the identifiers of their chunks.
///
///     size of the file (8) | size of the sound (8) | frames (8) | number of rows (4) | identifier (4), size (8) | ...
std::map<std::string, std::uint64_t> longSizesOf(std::string_view ds64) {
    std::map<std::string, std::uint64_t> sizes;
    try {
        BinaryReader reader(ds64.data(), ds64.size());
        reader.skip(8);
        sizes["data"] = reader.read<std::uint64_t>();
        reader.skip(8);
        for (auto rows = reader.read<std::uint32_t>(); rows > 0; --rows) {
            const std::string id(reader.readBytes(4));
            sizes[id] = reader.read<std::uint64_t>();
        }
    } catch (const EndOfData&) {
        // The table is cut off. Use its complete rows.
    }
    return sizes;
}

/// Returns the position after a chunk and its padding. Some programs omit the byte that pads an odd size.
std::uint64_t afterChunk(const FileBytes& file, const Chunk& chunk) {
    const std::uint64_t end = chunk.position + chunk.size;
    if (chunk.size % 2 == 0) return end;
    const std::string next = file.read(end, 5);
    const bool isUnpadded = next.size() == 5 && isIdentifier(std::string_view(next).substr(0, 4)) &&
                            !isIdentifier(std::string_view(next).substr(1, 4));
    return isUnpadded ? end : end + 1;
}

} // namespace

std::optional<ContainerChunks> ContainerChunks::read(const FileBytes& file, bool isSoundOpen) {
    const std::string header = file.read(0, OuterHeaderSize);
    if (header.size() < OuterHeaderSize) return std::nullopt;
    const std::string_view outer = std::string_view(header).substr(0, 4);
    const std::string_view inner = std::string_view(header).substr(8);
    if (outer == "RIFF" && inner == "WAVE") return ContainerChunks(file, ChunkFamily::Riff, false, isSoundOpen);
    if (outer == "RF64" && inner == "WAVE") return ContainerChunks(file, ChunkFamily::Riff, true, isSoundOpen);
    if (outer == "RIFX" && inner == "WAVE") return ContainerChunks(file, ChunkFamily::Rifx, false, isSoundOpen);
    if (outer == "FORM" && (inner == "AIFF" || inner == "AIFC"))
        return ContainerChunks(file, ChunkFamily::Aiff, false, isSoundOpen);
    return std::nullopt;
}

ContainerChunks::ContainerChunks(const FileBytes& file, ChunkFamily family, bool hasLongSizes, bool isSoundOpen)
    : m_family(family), m_hasLongSizes(hasLongSizes) {
    const std::uint64_t length = file.length();
    std::map<std::string, std::uint64_t> longSizes;
    for (std::uint64_t position = OuterHeaderSize; position < length;) {
        const std::string bytes = file.read(position, ChunkHeaderSize);
        if (bytes.size() < ChunkHeaderSize || !isIdentifier(std::string_view(bytes).substr(0, 4))) break;
        BinaryReader header(bytes.data(), bytes.size(), byteOrder());
        Chunk chunk{std::string(header.readBytes(4)), position + ChunkHeaderSize, header.read<std::uint32_t>()};
        if (chunk.size == SizeIsElsewhere && longSizes.contains(chunk.id)) chunk.size = longSizes[chunk.id];

        const std::uint64_t present = length - chunk.position;
        if (chunk.size > present || (isSoundOpen && holdsSound(chunk.id))) {
            if (holdsSound(chunk.id))
                m_chunks.push_back({chunk.id, chunk.position, present});
            else
                m_cutOff = chunk.id;
            break;
        }
        if (m_hasLongSizes && chunk.id == "ds64") {
            constexpr std::uint64_t LongestTable = 65536;
            longSizes = longSizesOf(file.read(chunk.position, std::min(chunk.size, LongestTable)));
        }
        position = afterChunk(file, chunk);
        m_chunks.push_back(std::move(chunk));
    }
}

std::vector<Chunk> ContainerChunks::descriptions() const {
    const auto isOwn = [&](const Chunk& chunk) {
        const auto isIn = [&](const auto& ids) { return std::find(ids.begin(), ids.end(), chunk.id) != ids.end(); };
        return m_family == ChunkFamily::Aiff ? isIn(OwnAiffChunks) : isIn(OwnRiffChunks);
    };
    std::vector<Chunk> found;
    std::remove_copy_if(m_chunks.begin(), m_chunks.end(), std::back_inserter(found), isOwn);
    return found;
}

const Chunk* ContainerChunks::tag() const {
    const auto isTag = [](const Chunk& chunk) { return chunk.id == "id3 " || chunk.id == "ID3 "; };
    const auto found = std::find_if(m_chunks.begin(), m_chunks.end(), isTag);
    return found == m_chunks.end() ? nullptr : &*found;
}

} // namespace eq
