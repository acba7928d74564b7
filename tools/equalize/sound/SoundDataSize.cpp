#include "tools/equalize/sound/SoundDataSize.h"

#include "support/BinaryReader.h"
#include "tools/common/Errors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace eq {
namespace {

constexpr std::uint64_t Most32 = 0xFFFFFFFF;
constexpr std::uint64_t Most64 = ~std::uint64_t{0};

constexpr const char* NeverFilledIn =
    "the size in its header was never filled in, so the end of the sound is not certain; create the file again, "
    "without a pipe";

/// Reads the headers in a regular file. Any other file counts as empty.
class HeaderFile {
public:
    explicit HeaderFile(const std::string& file) {
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored)) return;
        m_stream.open(file, std::ios::binary);
        m_length = std::filesystem::file_size(file);
    }

    [[nodiscard]] std::uint64_t length() const { return m_length; }
    /// Returns the number of bytes from a position to the end of the file.
    [[nodiscard]] std::uint64_t after(std::uint64_t position) const {
        return position < m_length ? m_length - position : 0;
    }

    /// Returns a reader of the header at a position. The reader is valid until the next call.
    BinaryReader at(std::uint64_t position, std::endian order) {
        m_stream.clear();
        m_stream.seekg(static_cast<std::streamoff>(position));
        m_stream.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
        return {m_bytes.data(), static_cast<std::size_t>(m_stream.gcount()), order};
    }

private:
    std::ifstream m_stream;
    std::uint64_t m_length = 0;
    std::array<char, 40> m_bytes = {}; // the longest header
};

/// Returns a correction that writes `value` into a field of `width` bytes, 4 or 8. If the value is too large for the
/// field, the correction writes the largest possible value.
HeaderCorrection field(std::uint64_t position, std::uint64_t value, std::size_t width, std::endian order) {
    if (width == 4) value = std::min(value, Most32);
    std::string bytes;
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t byte = order == std::endian::big ? width - 1 - i : i;
        bytes.push_back(static_cast<char>(value >> (8 * byte) & 0xFFU));
    }
    return {position, bytes};
}

/// Sizes that programs write into a pipe, because they do not know the real size. Some programs round these values down
/// to whole frames.
constexpr std::array<std::uint64_t, 5> Placeholders = {0x7F000000, 0x7FFFF000, 0x7FFFFFFF, 0x80000000, Most32};

bool isPlaceholder(std::uint64_t size, std::uint64_t frameBytes) {
    return std::any_of(Placeholders.begin(), Placeholders.end(), [&](std::uint64_t placeholder) {
        return size == placeholder || (frameBytes != 0 && size == placeholder / frameBytes * frameBytes);
    });
}

SoundDataSize closedAt(const HeaderFile& file, std::uint64_t begin, std::uint64_t promised) {
    return {promised, std::min(promised, file.after(begin))};
}

SoundDataSize openAt(const HeaderFile& file, std::uint64_t begin, std::vector<HeaderCorrection> corrections) {
    return {file.after(begin), file.after(begin), true, std::move(corrections)};
}

bool isIdentifier(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Returns whether only complete chunks follow from a position to the end of the file. If so, the size that leads to
/// this position is right. Chunks whose type `Size` has 32 bits are padded to an even length.
template <typename Size>
bool hasOnlyChunksAfter(HeaderFile& file, std::uint64_t position, std::endian order) {
    constexpr std::uint64_t Header = 4 + sizeof(Size);
    constexpr bool IsPadded = sizeof(Size) == 4;
    while (file.after(position) > (IsPadded ? 1 : 0)) {
        BinaryReader chunk = file.at(position, order);
        if (chunk.remaining() < Header || !isIdentifier(chunk.readBytes(4))) return false;
        const std::uint64_t size = chunk.read<Size>();
        if (size > file.after(position + Header)) return false;
        position += Header + size + (IsPadded ? size % 2 : 0);
    }
    return true;
}

/// The values of the chunks in front of the sound.
struct Container {
    std::endian order;
    std::uint64_t outerSize;
    std::uint64_t frameBytes = 0;    ///< 0 if unknown
    std::uint64_t sizesPosition = 0; ///< the position of the sizes in a ds64 chunk; 0 without such a chunk
    std::uint64_t longSize = 0;      ///< the size of the sound in a ds64 chunk
};

SoundDataSize sizeOfChunk(HeaderFile& file, const Container& container, std::uint64_t begin, std::uint64_t size,
                          std::uint64_t headBytes) {
    const bool isLong = container.sizesPosition != 0;
    const std::uint64_t stated = isLong ? container.longSize : size;
    const std::uint64_t rest = file.after(begin);
    const bool isOuterOpen = isPlaceholder(container.outerSize, 0) && stated == container.outerSize - (begin - 8);
    const bool isUnfilled = stated <= headBytes || stated == Most64 || isOuterOpen ||
                            isPlaceholder(stated - headBytes, container.frameBytes) ||
                            isPlaceholder(stated, container.frameBytes);
    // A program that counts the size with 32 bits starts again at zero after 4 GiB.
    const bool hasOverflowed = !isLong && rest > Most32 && rest - stated > Most32;
    const bool endsBeforeFile =
        stated < rest && hasOnlyChunksAfter<std::uint32_t>(file, begin + stated + stated % 2, container.order);
    if (!hasOverflowed && (!isUnfilled || endsBeforeFile)) return closedAt(file, begin, stated);

    if (!isLong)
        return openAt(file, begin,
                      {field(4, file.length() - 8, 4, container.order), field(begin - 4, rest, 4, container.order)});
    const std::uint64_t sizes = container.sizesPosition;
    const std::uint64_t frames = container.frameBytes != 0 ? rest / container.frameBytes : 0;
    return openAt(file, begin,
                  {field(sizes, file.length() - 8, 8, container.order), field(sizes + 8, rest, 8, container.order),
                   field(sizes + 16, frames, 8, container.order)});
}

/// Returns the size of the sound in a container of chunks. A chunk has an identifier of four characters, a size of 32
/// bits, and contents that are padded to an even length. The contents of the sound's chunk start with `headBytes` bytes
/// that are not sound.
SoundDataSize sizeInChunks(HeaderFile& file, std::endian order, std::string_view soundChunk, std::uint64_t headBytes) {
    constexpr std::uint64_t OuterHeader = 12;
    constexpr std::uint64_t ChunkHeader = 8;
    Container container{order, file.at(4, order).read<std::uint32_t>()};
    for (std::uint64_t position = OuterHeader;;) {
        BinaryReader chunk = file.at(position, order);
        const std::string_view identifier = chunk.readBytes(4);
        const std::uint64_t size = chunk.read<std::uint32_t>();
        const std::uint64_t begin = position + ChunkHeader;
        if (identifier == soundChunk) return sizeOfChunk(file, container, begin, size, headBytes);
        if (identifier == "ds64") {
            chunk.skip(8); // the size of the whole file
            container.longSize = chunk.read<std::uint64_t>();
            container.sizesPosition = begin;
        } else if (identifier == "fmt ") {
            chunk.skip(12);
            container.frameBytes = chunk.read<std::uint16_t>();
        } else if (identifier == "COMM") {
            const std::uint64_t channels = chunk.read<std::uint16_t>();
            chunk.skip(4);
            container.frameBytes = channels * ((chunk.read<std::uint16_t>() + 7U) / 8U);
        }
        position = begin + size + size % 2;
    }
}

/// Returns the size of a W64 file, or of its sound if the header leaves the size open. A chunk has an identifier of 16
/// bytes, a size of 64 bits that includes the chunk's header, and contents that are padded to a multiple of eight
/// bytes.
SoundDataSize sizeInLongChunks(HeaderFile& file) {
    constexpr std::uint64_t OuterHeader = 40;
    constexpr std::uint64_t ChunkHeader = 24;
    constexpr std::uint64_t SizePosition = 16;
    BinaryReader header = file.at(SizePosition, std::endian::little);
    const auto promised = header.read<std::uint64_t>();
    for (std::uint64_t position = OuterHeader;;) {
        BinaryReader chunk = file.at(position, std::endian::little);
        const bool isSound = chunk.readBytes(SizePosition).starts_with("data");
        const auto size = chunk.read<std::uint64_t>();
        const std::uint64_t rest = file.after(position + ChunkHeader);
        if (isSound && promised == Most64 && (size <= ChunkHeader || size - ChunkHeader > rest))
            return openAt(file, position + ChunkHeader,
                          {field(SizePosition, file.length(), 8, std::endian::little),
                           field(position + SizePosition, rest + ChunkHeader, 8, std::endian::little)});
        if (isSound && size <= ChunkHeader && promised < file.length() && rest != 0) throw FileError(NeverFilledIn);
        if (isSound || size < ChunkHeader) return closedAt(file, 0, promised);
        if (size > file.after(position)) throw EndOfData();
        position += (size + 7) / 8 * 8;
    }
}

/// Returns the size of the sound in a CAF file. A chunk has an identifier of four characters, a size of 64 bits, and
/// contents without padding.
SoundDataSize sizeInAppleChunks(HeaderFile& file) {
    constexpr std::uint64_t OuterHeader = 8;
    constexpr std::uint64_t ChunkHeader = 12;
    constexpr std::uint64_t EditCount = 4; // the sound's chunk starts with a count of edits
    for (std::uint64_t position = OuterHeader;;) {
        BinaryReader chunk = file.at(position, std::endian::big);
        const bool isSound = chunk.readBytes(4) == "data";
        const auto size = chunk.read<std::uint64_t>();
        const std::uint64_t begin = position + ChunkHeader;
        if (isSound && size == Most64)
            return openAt(file, begin, {field(position + 4, file.after(begin), 8, std::endian::big)});
        if (isSound && size <= EditCount && !hasOnlyChunksAfter<std::uint64_t>(file, begin + size, std::endian::big))
            throw FileError(NeverFilledIn);
        if (isSound) return closedAt(file, begin, size);
        if (size > file.after(begin)) throw EndOfData();
        position = begin + size;
    }
}

SoundDataSize sizeOfAu(HeaderFile& file) {
    BinaryReader header = file.at(4, std::endian::big);
    const std::uint64_t begin = header.read<std::uint32_t>();
    const std::uint64_t size = header.read<std::uint32_t>();
    const std::uint64_t rest = file.after(begin);
    // libsndfile reads the size as a signed number, and reads to the end of the file if the size is open.
    constexpr std::uint64_t LongestRead = 0x7FFFFFFF;
    HeaderCorrection correction = field(8, rest > LongestRead ? Most32 : rest, 4, std::endian::big);
    if (size == 0 || size == Most32) return openAt(file, begin, {std::move(correction)});
    SoundDataSize closed = closedAt(file, begin, size);
    if (size <= LongestRead || size > rest) return closed;
    if (size < rest) throw FileError("an AU file with more than 2 GiB of sound and other data after it cannot be read");
    closed.corrections.push_back(std::move(correction));
    return closed;
}

std::optional<SoundDataSize> promisedBy(HeaderFile& file) {
    using enum std::endian;
    const std::string kind(file.at(0, little).readBytes(4));
    if (kind == "RIFF" || kind == "RF64") return sizeInChunks(file, little, "data", 0);
    if (kind == "RIFX") return sizeInChunks(file, big, "data", 0);
    if (kind == "FORM") return sizeInChunks(file, big, "SSND", 8);
    if (kind == "riff") return sizeInLongChunks(file);
    if (kind == "caff") return sizeInAppleChunks(file);
    if (kind == ".snd") return sizeOfAu(file);
    return std::nullopt;
}

} // namespace

bool isPlaceholderLength(std::uint64_t frames, std::uint64_t frameBytes) {
    return std::any_of(Placeholders.begin(), Placeholders.end(),
                       [&](std::uint64_t placeholder) { return frames == placeholder / frameBytes; });
}

std::optional<SoundDataSize> soundDataSizeOf(const std::string& file) {
    try {
        HeaderFile headers(file);
        return promisedBy(headers);
    } catch (const EndOfData&) {
        return std::nullopt;
    }
}

} // namespace eq
