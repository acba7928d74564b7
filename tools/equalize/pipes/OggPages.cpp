#include "tools/equalize/pipes/OggPages.h"

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"

#include <numeric>

namespace eq {
namespace {

constexpr std::size_t SequencePosition = 18;
constexpr std::size_t ChecksumPosition = 22;

/// Returns the size of the first page in bytes, or 0 if the page is not complete.
std::size_t sizeOfPage(std::string_view bytes) {
    if (bytes.size() < OggFixedHeader) return 0;
    const std::size_t segments = static_cast<unsigned char>(bytes[OggFixedHeader - 1]);
    if (bytes.size() < OggFixedHeader + segments) return 0;
    std::size_t size = OggFixedHeader + segments;
    for (const char segment : bytes.substr(OggFixedHeader, segments)) size += static_cast<unsigned char>(segment);
    return size <= bytes.size() ? size : 0;
}

/// Returns the checksum of a page whose checksum field is zero: a CRC with the polynomial 0x04C11DB7, without
/// reflection (S. Pfeiffer, The Ogg Encapsulation Format, RFC 3533, 2003, section 6).
std::uint32_t checksumOf(std::string_view page) {
    constexpr std::uint32_t Polynomial = 0x04C11DB7;
    std::uint32_t checksum = 0;
    for (const char byte : page) {
        checksum ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << 24U;
        for (int bit = 0; bit < 8; ++bit) checksum = checksum << 1U ^ ((checksum >> 31U) != 0 ? Polynomial : 0U);
    }
    return checksum;
}

void put(std::string& page, std::size_t position, std::uint32_t value) {
    BinaryWriter field;
    field.write(value);
    page.replace(position, sizeof value, field.written());
}

} // namespace

std::uint32_t OggPages::count(std::string_view pages) {
    std::uint32_t count = 0;
    for (std::size_t size = sizeOfPage(pages); size > 0; size = sizeOfPage(pages)) {
        pages.remove_prefix(size);
        ++count;
    }
    return count;
}

std::string OggPages::add(std::string_view bytes) {
    if (m_added == 0) return std::string(bytes);
    m_waiting += bytes;
    std::string complete;
    for (std::size_t size = sizeOfPage(m_waiting); size > 0; size = sizeOfPage(m_waiting)) {
        std::string page = m_waiting.substr(0, size);
        renumber(page);
        complete += page;
        m_waiting.erase(0, size);
    }
    return complete;
}

void OggPages::renumber(std::string& page) const {
    const auto number = BinaryReader(page.data() + SequencePosition, 4).peek<std::uint32_t>();
    put(page, SequencePosition, number + m_added);
    put(page, ChecksumPosition, 0);
    put(page, ChecksumPosition, checksumOf(page));
}

} // namespace eq
