#include "tools/equalize/SoundDataSize.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace tool {
namespace {

/// Reads numbers and identifiers of one byte order from anywhere in a regular file; nothing beyond its end.
class HeaderReader {
public:
    explicit HeaderReader(const std::string& file) {
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored)) return;
        m_stream.open(file, std::ios::binary);
        m_length = std::filesystem::file_size(file);
    }

    void useBigEndian() { m_bigEndian = true; }
    [[nodiscard]] std::uint64_t length() const { return m_length; }

    [[nodiscard]] std::optional<std::string> identifier(std::uint64_t position) {
        if (!read(position, 4)) return std::nullopt;
        return std::string(m_bytes.data(), 4);
    }

    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t position, std::size_t bytes) {
        if (!read(position, bytes)) return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value = value << 8 | static_cast<unsigned char>(m_bytes[m_bigEndian ? i : bytes - 1 - i]);
        return value;
    }

private:
    bool read(std::uint64_t position, std::size_t bytes) {
        if (position > m_length || m_length - position < bytes) return false;
        m_stream.seekg(static_cast<std::streamoff>(position));
        return static_cast<bool>(m_stream.read(m_bytes.data(), static_cast<std::streamsize>(bytes)));
    }

    std::ifstream m_stream;
    std::uint64_t m_length = 0;
    bool m_bigEndian = false;
    std::array<char, 8> m_bytes = {};
};

/// Programs that write into a pipe cannot know the size, and put one of these.
bool leavesSizeOpen(std::uint64_t size) {
    constexpr std::array<std::uint64_t, 5> Open = {0, 0x7FFFF000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    return std::find(Open.begin(), Open.end(), size) != Open.end();
}

std::optional<SoundDataSize> sizesAt(const HeaderReader& header, std::uint64_t begin, std::uint64_t promised) {
    if (leavesSizeOpen(promised) || begin > header.length()) return std::nullopt;
    return SoundDataSize{promised, std::min(promised, header.length() - begin)};
}

/// A container's chunks: four characters, a size of 32 bits, and contents padded to an even length.
std::optional<SoundDataSize> sizeInChunks(HeaderReader& header, std::string_view soundChunk) {
    constexpr std::uint64_t OuterHeader = 12;
    constexpr std::uint64_t ChunkHeader = 8;
    std::optional<std::uint64_t> longSize;
    for (std::uint64_t position = OuterHeader;;) {
        const auto identifier = header.identifier(position);
        const auto size = header.number(position + 4, 4);
        if (!identifier || !size) return std::nullopt;
        // RF64 keeps the sizes of 64 bits in front: of the whole file, then of the sound.
        if (*identifier == "ds64") longSize = header.number(position + ChunkHeader + 8, 8);
        if (*identifier == soundChunk) return sizesAt(header, position + ChunkHeader, longSize.value_or(*size));
        position += ChunkHeader + *size + *size % 2;
    }
}

} // namespace

std::optional<SoundDataSize> soundDataSizeOf(const std::string& file) {
    HeaderReader header(file);
    const std::string kind = header.identifier(0).value_or("");
    if (kind == "RIFF" || kind == "RF64") return sizeInChunks(header, "data");
    if (kind == "riff") return sizesAt(header, 0, header.number(16, 8).value_or(0));
    header.useBigEndian();
    if (kind == "RIFX") return sizeInChunks(header, "data");
    if (kind == "FORM") return sizeInChunks(header, "SSND");
    if (kind == ".snd") return sizesAt(header, header.number(4, 4).value_or(0), header.number(8, 4).value_or(0));
    return std::nullopt;
}

} // namespace tool
