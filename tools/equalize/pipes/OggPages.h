#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

// The header of an Ogg page, with the sizes in bytes:
//
//     "OggS" | version | flags | position | serial number | sequence number | checksum | segments | their sizes
//       4    |    1    |   1   |    8     |       4       |        4        |    4     |    1     |   1 each

constexpr std::size_t OggFixedHeader = 27; ///< the size of an Ogg page's header without the sizes of its segments
constexpr unsigned OggBeginOfStream = 2;   ///< the flag of the first page of a stream

/// Renumbers the pages after the header of an Ogg stream if the header has become longer or shorter by some pages.
class OggPages {
public:
    /// Returns the number of complete pages at the beginning of `pages`.
    [[nodiscard]] static std::uint32_t count(std::string_view pages);

    /// `added` is the number of pages that the header has gained, modulo 2^32: if the header has lost one page, `added`
    /// is 2^32 - 1.
    explicit OggPages(std::uint32_t added) : m_added(added) {}

    /// Adds the next bytes of the stream. Returns the pages that are now complete, with their new numbers.
    [[nodiscard]] std::string add(std::string_view bytes);

private:
    void renumber(std::string& page) const;

    std::uint32_t m_added; ///< pages that the header has gained, modulo 2^32
    std::string m_waiting; ///< the page that is not complete yet
};

} // namespace eq
