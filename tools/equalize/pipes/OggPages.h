#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Renumbers the pages of an Ogg stream, whose header has become longer or shorter by some pages.
class OggPages {
public:
    /// Returns the number of pages.
    [[nodiscard]] static std::uint32_t count(std::string_view pages);

    explicit OggPages(std::uint32_t added) : m_added(added) {}

    /// Returns the pages that are complete with these bytes, with new numbers.
    [[nodiscard]] std::string add(std::string_view bytes);

private:
    void renumber(std::string& page) const;

    std::uint32_t m_added; ///< modulo 2^32
    std::string m_waiting;
};

} // namespace eq
