#include "tools/equalize/sound/TrailingTags.h"

#include "support/BinaryReader.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace eq {
namespace {

/// Returns the `count` bytes before the position `end`, or fewer if the file begins later.
std::string bytesBefore(const FileBytes& file, std::uint64_t end, std::uint64_t count) {
    const std::uint64_t present = std::min(end, count);
    return file.read(end - present, static_cast<std::size_t>(present));
}

std::uint64_t id3v1Size(const FileBytes& file, std::uint64_t end) {
    constexpr std::uint64_t Size = 128;
    const std::string bytes = bytesBefore(file, end, Size);
    return bytes.size() == Size && bytes.starts_with("TAG") ? Size : 0;
}

//  header (optional) | items | footer
//
//  footer, with the sizes in bytes:
//  identifier (8) | version (4) | size (4) | number of items (4) | flags (4) | reserved (8)
std::uint64_t apeSize(const FileBytes& file, std::uint64_t end) {
    constexpr std::uint64_t FooterSize = 32;
    constexpr std::uint32_t HasHeader = 0x80000000;
    const std::string bytes = bytesBefore(file, end, FooterSize);
    if (bytes.size() < FooterSize || !bytes.starts_with("APETAGEX")) return 0;
    BinaryReader footer(bytes.data(), bytes.size());
    footer.skip(12);
    const std::uint64_t size = footer.read<std::uint32_t>();
    footer.skip(4);
    return size + ((footer.read<std::uint32_t>() & HasHeader) != 0 ? FooterSize : 0);
}

//  LYRICSBEGIN | fields | size of both (6 digits) | LYRICS200
std::uint64_t lyricsSize(const FileBytes& file, std::uint64_t end) {
    constexpr std::uint64_t Digits = 6;
    constexpr std::uint64_t FooterSize = Digits + 9;
    const std::string bytes = bytesBefore(file, end, FooterSize);
    if (bytes.size() < FooterSize || !bytes.ends_with("LYRICS200")) return 0;
    std::uint64_t size = 0;
    for (const char c : std::string_view(bytes).substr(0, Digits)) {
        if (c < '0' || c > '9') return 0;
        size = 10 * size + static_cast<std::uint64_t>(c - '0');
    }
    size += FooterSize;
    constexpr std::string_view Begin = "LYRICSBEGIN";
    return size <= end && file.read(end - size, Begin.size()) == Begin ? size : 0;
}

} // namespace

std::uint64_t trailingTagSize(const FileBytes& file) {
    const std::uint64_t length = file.length();
    for (std::uint64_t end = length;;) {
        const std::uint64_t size = std::max({id3v1Size(file, end), apeSize(file, end), lyricsSize(file, end)});
        if (size == 0 || size > end) return length - end;
        end -= size;
    }
}

} // namespace eq
