#include "tools/equalize/sound/NativeTags.h"

#include "support/BinaryReader.h"
#include "tools/equalize/sound/TrailingTags.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace eq {
namespace {

/// Returns the size in bytes of the ID3v2 tag at a position, with its header and footer. Returns 0 if there is no tag.
std::uint64_t id3SizeAt(const FileBytes& file, std::uint64_t position) {
    constexpr std::size_t HeaderSize = 10;
    const std::string bytes = file.read(position, HeaderSize);
    if (bytes.size() < HeaderSize || !bytes.starts_with("ID3")) return 0;
    BinaryReader header(bytes.data(), bytes.size());
    header.skip(5);
    const bool hasFooter = (header.read<std::uint8_t>() & 0x10U) != 0;
    std::uint64_t size = 0;
    for (int i = 0; i < 4; ++i) size = size << 7U | (header.read<std::uint8_t>() & 0x7FU);
    return HeaderSize + size + (hasFooter ? HeaderSize : 0);
}

/// Returns the total size of all ID3v2 tags at the beginning of a file, or 0 if they extend beyond the end of the file.
std::uint64_t id3Size(const FileBytes& file) {
    std::uint64_t all = 0;
    while (const std::uint64_t size = id3SizeAt(file, all)) all += size;
    return all <= file.length() ? all : 0;
}

} // namespace

bool copyMpegTags(const FileBytes& source, const FileBytes& target) {
    const std::uint64_t leading = id3Size(source);
    const std::uint64_t trailing = trailingTagSize(source);
    target.replace(0, 0, source.read(0, leading));
    target.copy(source, source.length() - trailing, target.length(), trailing);
    return leading + trailing > 0;
}

//  fLaC | STREAMINFO | block | block | ... | sound        block: last (1 bit), kind (7), size (24), contents
void copyFlacBlocks(const FileBytes& source, const FileBytes& target) {
    constexpr std::uint64_t MarkSize = 4;
    constexpr std::uint64_t HeaderSize = 4;
    constexpr std::uint64_t StreamInfoSize = 34;
    constexpr std::uint32_t LastBlock = 0x80000000;
    constexpr std::uint32_t Application = 2;
    constexpr std::uint32_t CueSheet = 5;
    std::uint64_t position = id3Size(source);
    if (source.read(position, MarkSize) != "fLaC" || target.read(0, MarkSize) != "fLaC") return;
    position += MarkSize;
    std::string blocks;
    for (bool isLast = false; !isLast;) {
        const std::string header = source.read(position, HeaderSize);
        if (header.size() < HeaderSize) break;
        const auto word = BinaryReader(header.data(), header.size(), std::endian::big).peek<std::uint32_t>();
        isLast = (word & LastBlock) != 0;
        const std::uint32_t kind = word >> 24U & 0x7FU;
        const std::uint32_t size = word & 0xFFFFFFU;
        if (kind == Application || kind == CueSheet) {
            blocks.push_back(static_cast<char>(kind));
            blocks += source.read(position + 1, HeaderSize - 1 + size);
        }
        position += HeaderSize + size;
    }
    // Insert the copied blocks before other blocks of the target, because no copied block is marked as the last block.
    target.replace(MarkSize + HeaderSize + StreamInfoSize, 0, blocks);
}

} // namespace eq
