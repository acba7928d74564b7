#include "tools/equalize/pipes/PipeLayout.h"

#include "support/BinaryReader.h"
#include "tools/equalize/pipes/OggPages.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace eq {
namespace {

constexpr std::size_t Kept = PipeSource::KeptBytes;

/// Returns a reader of `count` bytes at `position` in the kept bytes of the pipe. The reader has fewer bytes if the
/// kept bytes end earlier. Throws EndOfData if the position is beyond the kept bytes.
BinaryReader headAt(PipeSource& source, std::uint64_t position, std::size_t count, std::endian order) {
    if (position > Kept) throw EndOfData();
    const std::string_view head = source.head(static_cast<std::size_t>(position) + count);
    const std::string_view bytes = head.substr(std::min<std::size_t>(position, head.size()));
    return {bytes.data(), bytes.size(), order};
}

/// Returns true for a size of 0 in a stream that ends within the kept bytes. Either the sound is empty, or its size was
/// never filled in. Reading a temporary copy as a file shows which of the two is true.
bool isDoubtful(PipeSource& source, std::uint64_t size) {
    return size == 0 && source.head(Kept).size() < Kept;
}

PipeLayout layoutOfWav(PipeSource& source, std::endian order) {
    constexpr std::uint64_t OuterHeader = 12;
    constexpr std::uint64_t ChunkHeader = 8;
    // Formats that do not code their samples in blocks: integers (1), floats (3), A-law (6), u-law (7), and extensible
    // WAV (0xFFFE), which contains the same formats.
    constexpr std::array<unsigned, 5> PlainFormats = {1, 3, 6, 7, 0xFFFE};
    PipeLayout layout;
    if (headAt(source, 8, 4, order).readBytes(4) != "WAVE") return layout;
    bool isPlain = false;
    for (std::uint64_t position = OuterHeader;;) {
        BinaryReader chunk = headAt(source, position, ChunkHeader, order);
        const std::string_view identifier = chunk.readBytes(4);
        const bool isSound = identifier == "data";
        const bool isFormat = identifier == "fmt ";
        const std::uint64_t size = chunk.read<std::uint32_t>();
        position += ChunkHeader;
        if (isFormat) {
            BinaryReader format = headAt(source, position, 14, order);
            const unsigned kind = format.read<std::uint16_t>();
            format.skip(10);
            layout.frameBytes = format.read<std::uint16_t>();
            isPlain = std::ranges::find(PlainFormats, kind) != PlainFormats.end() && layout.frameBytes != 0;
        }
        if (isSound) {
            if (!isPlain || position >= Kept || isDoubtful(source, size)) return {};
            layout.reading = PipeLayout::Reading::InOrder;
            layout.soundBegin = position;
            layout.soundSize = size;
            layout.sizePosition = position - 4;
            layout.order = order;
            layout.hasChunks = true;
            return layout;
        }
        position += size + size % 2;
    }
}

PipeLayout layoutOfAu(PipeSource& source) {
    // The bytes per sample of each encoding; 0 for an unknown encoding, and for an encoding that codes samples in
    // blocks.
    constexpr std::array<std::uint64_t, 28> SampleBytes = {0, 1, 1, 2, 3, 4, 4, 8, 0, 0, 0, 0, 0, 0,
                                                           0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    BinaryReader header = headAt(source, 4, 20, std::endian::big);
    PipeLayout layout;
    layout.order = std::endian::big;
    layout.sizePosition = 8;
    layout.soundBegin = header.read<std::uint32_t>();
    layout.soundSize = header.read<std::uint32_t>();
    const auto encoding = header.read<std::uint32_t>();
    header.skip(4);
    layout.frameBytes = (encoding < SampleBytes.size() ? SampleBytes[encoding] : 0) * header.read<std::uint32_t>();
    if (layout.frameBytes == 0 || layout.soundBegin < 24 || layout.soundBegin >= Kept ||
        isDoubtful(source, layout.soundSize))
        return {};
    layout.reading = PipeLayout::Reading::InOrder;
    return layout;
}

//  fLaC | block | block | ... | sound        block: last (1 bit), kind (7), size (24), contents
PipeLayout layoutOfFlac(PipeSource& source) {
    constexpr std::uint32_t LastBlock = 0x80000000;
    PipeLayout layout;
    std::uint64_t position = 4;
    for (bool isLast = false; !isLast;) {
        const auto word = headAt(source, position, 4, std::endian::big).read<std::uint32_t>();
        isLast = (word & LastBlock) != 0;
        position += 4 + (word & 0xFFFFFFU);
    }
    if (source.head(position).size() < position) return layout;
    layout.reading = PipeLayout::Reading::InOrder;
    return layout;
}

/// Returns a layout for reading in order if there is one stream, of Vorbis or Opus, and its comments end within the
/// kept bytes.
PipeLayout layoutOfOgg(PipeSource& source) {
    PipeLayout layout;
    std::uint64_t position = 0;
    for (int packets = 0; packets < 2;) {
        BinaryReader page = headAt(source, position, OggFixedHeader + 255, std::endian::little);
        if (page.readBytes(4) != "OggS") return layout;
        page.skip(1);
        const bool beginsStream = (page.read<std::uint8_t>() & OggBeginOfStream) != 0;
        if (beginsStream != (position == 0)) return layout;
        page.skip(OggFixedHeader - 7);
        const std::size_t segments = page.read<std::uint8_t>();
        position += OggFixedHeader + segments;
        for (std::size_t i = 0; i < segments; ++i) {
            const unsigned size = page.read<std::uint8_t>();
            position += size;
            packets += size < 255 ? 1 : 0;
        }
        if (beginsStream && !page.readBytes(8).starts_with("\x01vorbis")) {
            const std::string_view begin = source.head(position);
            if (begin.find("OpusHead") != OggFixedHeader + segments) return layout;
        }
    }
    if (source.head(position).size() < position) return layout;
    layout.reading = PipeLayout::Reading::InOrder;
    return layout;
}

/// Skips ID3v2 tags. Returns a layout for reading in order if an MPEG frame follows.
///
///     frame header, in bits: 11 that are 1 | version (2) | layer (2) | protection (1) | bitrate (4) | rate (2) | ...
PipeLayout layoutOfMpeg(PipeSource& source) {
    PipeLayout layout;
    std::uint64_t position = 0;
    for (;;) {
        BinaryReader tag = headAt(source, position, 10, std::endian::big);
        if (tag.readBytes(3) != "ID3") break;
        tag.skip(2);
        const bool hasFooter = (tag.read<std::uint8_t>() & 0x10U) != 0;
        std::uint64_t size = 0;
        for (int i = 0; i < 4; ++i) size = size << 7U | (tag.read<std::uint8_t>() & 0x7FU);
        position += size + (hasFooter ? 20 : 10);
    }
    const auto frame = headAt(source, position, 4, std::endian::big).read<std::uint32_t>();
    const bool isFrame = frame >> 21U == 0x7FF && (frame >> 19U & 3U) != 1 && (frame >> 17U & 3U) != 0 &&
                         (frame >> 12U & 15U) != 15 && (frame >> 10U & 3U) != 3;
    if (!isFrame) return layout;
    layout.reading = PipeLayout::Reading::InOrder;
    layout.isMpeg = true;
    return layout;
}

} // namespace

PipeLayout layoutOf(PipeSource& source) {
    try {
        const std::string_view kind = source.head(4);
        if (kind == "RIFF") return layoutOfWav(source, std::endian::little);
        if (kind == "RIFX") return layoutOfWav(source, std::endian::big);
        if (kind == ".snd") return layoutOfAu(source);
        if (kind == "fLaC") return layoutOfFlac(source);
        if (kind == "OggS") return layoutOfOgg(source);
        if (kind.starts_with("ID3") || kind.starts_with('\xFF')) return layoutOfMpeg(source);
    } catch (const EndOfData&) {
        // The header is longer than the kept bytes, or it is cut off. Reading a temporary copy as a file finds the
        // reason.
    }
    return {};
}

} // namespace eq
