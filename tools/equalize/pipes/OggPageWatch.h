#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Follows the pages of an Ogg stream as its bytes come, and finds what the decoder would not report: a second stream
/// after the first one, and a page that is cut off.
class OggPageWatch {
public:
    void add(std::string_view bytes);

    /// Returns the fault of the stream if it ends here, or an empty text.
    [[nodiscard]] std::string fault() const;

    static constexpr const char* CutOff = "the file ends early: its last Ogg page is cut off";
    [[nodiscard]] static std::string severalStreams(std::uint64_t position);

private:
    void takeHeader();

    std::string m_header; ///< of the page that begins
    std::uint64_t m_bodyLeft = 0;
    std::uint64_t m_position = 0;
    std::uint64_t m_pageBegin = 0;
    bool m_hasSound = false;
    bool m_isOver = false; ///< the pages end, or a fault is found
    std::string m_fault;
};

} // namespace eq
