#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Checks the pages of an Ogg stream while its bytes arrive. Finds two faults that the decoder does not report: a
/// second stream after the first stream, and a page that is cut off.
class OggPageWatch {
public:
    /// Checks the next bytes of the stream.
    void add(std::string_view bytes);

    /// Returns the fault of a stream that ends after the added bytes, or an empty text.
    [[nodiscard]] std::string fault() const;

    /// The messages for the two faults. `position` is the place of the second stream in bytes.
    static constexpr const char* CutOff =
        "the file ends early: its last Ogg page is cut off; copy or download it again";
    [[nodiscard]] static std::string severalStreams(std::uint64_t position);

private:
    void takeHeader();

    std::string m_header; ///< the part of the current page's header that has arrived
    std::uint64_t m_bodyLeft = 0;
    std::uint64_t m_position = 0;
    std::uint64_t m_pageBegin = 0;
    bool m_hasSound = false;
    bool m_isOver = false; ///< the check has ended: there is no further page, or a fault is found
    std::string m_fault;
};

} // namespace eq
