#include "tools/equalize/SoundDataSize.h"

#include "support/BinaryReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace eq {
namespace {

/// The headers in a regular file. Any other file counts as empty.
class HeaderFile {
public:
    explicit HeaderFile(const std::string& file) {
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored)) return;
        m_stream.open(file, std::ios::binary);
        m_length = std::filesystem::file_size(file);
    }

    [[nodiscard]] std::uint64_t length() const { return m_length; }

    /// Returns a reader of the header at a position, which is valid until the next call.
    BinaryReader at(std::uint64_t position, std::endian order) {
        m_stream.clear();
        m_stream.seekg(static_cast<std::streamoff>(position));
        m_stream.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
        return {m_bytes.data(), static_cast<std::size_t>(m_stream.gcount()), order};
    }

private:
    std::ifstream m_stream;
    std::uint64_t m_length = 0;
    std::array<char, 24> m_bytes = {}; // the longest header
};

/// Programs that write into a pipe cannot know the size, and put one of these.
bool leavesSizeOpen(std::uint64_t size) {
    constexpr std::array<std::uint64_t, 5> Open = {0, 0x7FFFF000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    return std::find(Open.begin(), Open.end(), size) != Open.end();
}

std::optional<SoundDataSize> sizesAt(const HeaderFile& file, std::uint64_t begin, std::uint64_t promised) {
    if (leavesSizeOpen(promised) || begin > file.length()) return std::nullopt;
    return SoundDataSize{promised, std::min(promised, file.length() - begin)};
}

/// A container's chunks: four characters, a size of 32 bits, and contents padded to an even length.
std::optional<SoundDataSize> sizeInChunks(HeaderFile& file, std::endian order, std::string_view soundChunk) {
    constexpr std::uint64_t OuterHeader = 12;
    constexpr std::uint64_t ChunkHeader = 8;
    std::optional<std::uint64_t> longSize;
    for (std::uint64_t position = OuterHeader;;) {
        BinaryReader chunk = file.at(position, order);
        const std::string_view identifier = chunk.readBytes(4);
        const std::uint64_t size = chunk.read<std::uint32_t>();
        if (identifier == soundChunk) return sizesAt(file, position + ChunkHeader, longSize.value_or(size));
        if (identifier == "ds64") {
            chunk.skip(8); // the size of the whole file
            longSize = chunk.read<std::uint64_t>();
        }
        position += ChunkHeader + size + size % 2;
    }
}

std::optional<SoundDataSize> promisedBy(HeaderFile& file) {
    using enum std::endian;
    const std::string kind(file.at(0, little).readBytes(4));
    if (kind == "RIFF" || kind == "RF64") return sizeInChunks(file, little, "data");
    if (kind == "RIFX") return sizeInChunks(file, big, "data");
    if (kind == "FORM") return sizeInChunks(file, big, "SSND");
    if (kind == "riff") {
        BinaryReader header = file.at(0, little);
        header.skip(16); // the rest of the identifier
        return sizesAt(file, 0, header.read<std::uint64_t>());
    }
    if (kind == ".snd") {
        BinaryReader header = file.at(4, big);
        const auto begin = header.read<std::uint32_t>();
        return sizesAt(file, begin, header.read<std::uint32_t>());
    }
    return std::nullopt;
}

} // namespace

std::optional<SoundDataSize> soundDataSizeOf(const std::string& file) {
    try {
        HeaderFile headers(file);
        return promisedBy(headers);
    } catch (const EndOfData&) {
        return std::nullopt;
    }
}

} // namespace eq
