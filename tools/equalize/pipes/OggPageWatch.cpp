#include "tools/equalize/pipes/OggPageWatch.h"

#include "support/BinaryReader.h"

#include <algorithm>

namespace eq {
namespace {

// The header of an Ogg page, with the sizes in bytes:
//
//     "OggS" | version | flags | position | serial number | sequence number | checksum | segments | their sizes
//       4    |    1    |   1   |    8     |       4       |        4        |    4     |    1     |   1 each
constexpr std::size_t FixedHeader = 27;
constexpr unsigned BeginOfStream = 2;

std::size_t headerSizeOf(const std::string& header) {
    return header.size() < FixedHeader ? FixedHeader
                                       : FixedHeader + static_cast<unsigned char>(header[FixedHeader - 1]);
}

} // namespace

void OggPageWatch::add(std::string_view bytes) {
    while (!bytes.empty() && !m_isOver) {
        std::size_t used = 0;
        if (m_bodyLeft > 0) {
            used = static_cast<std::size_t>(std::min<std::uint64_t>(m_bodyLeft, bytes.size()));
            m_bodyLeft -= used;
        } else {
            if (m_header.empty()) m_pageBegin = m_position;
            used = std::min(bytes.size(), headerSizeOf(m_header) - m_header.size());
            m_header += bytes.substr(0, used);
            if (m_header.size() >= FixedHeader && m_header.size() == headerSizeOf(m_header)) takeHeader();
        }
        m_position += used;
        bytes.remove_prefix(used);
    }
}

void OggPageWatch::takeHeader() {
    BinaryReader page(m_header.data(), m_header.size());
    if (page.readBytes(4) != "OggS") {
        m_isOver = true; // not a page: libsndfile skips it, or the sound ends
        return;
    }
    page.skip(1);
    const bool beginsStream = (page.read<std::uint8_t>() & BeginOfStream) != 0;
    page.skip(FixedHeader - 6);
    while (page.remaining() > 0) m_bodyLeft += page.read<std::uint8_t>();
    if (beginsStream && m_hasSound) {
        m_fault = severalStreams(m_pageBegin);
        m_isOver = true;
    }
    m_hasSound = m_hasSound || !beginsStream;
    m_header.clear();
}

std::string OggPageWatch::fault() const {
    return !m_isOver && (m_bodyLeft > 0 || !m_header.empty()) ? CutOff : m_fault;
}

std::string OggPageWatch::severalStreams(std::uint64_t position) {
    return "the file has several Ogg streams one after the other, and only the first can be read; divide the file at "
           "byte " +
           std::to_string(position);
}

} // namespace eq
