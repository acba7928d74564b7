#include "tools/equalize/sound/TagStream.h"

#include <string>

namespace eq {
namespace {

std::string_view bytesOf(const TagLib::ByteVector& data) {
    return {data.data(), data.size()};
}

} // namespace

template <typename Access>
void TagStream::attempt(const Access& access) {
    if (m_failure) return;
    try {
        access();
    } catch (...) {
        m_failure = std::current_exception();
    }
}

TagLib::ByteVector TagStream::readBlock(unsigned long length) {
    std::string bytes;
    attempt([&] { bytes = m_file.read(static_cast<std::uint64_t>(m_position), length); });
    m_position += static_cast<long>(bytes.size());
    return {bytes.data(), static_cast<unsigned int>(bytes.size())};
}

void TagStream::writeBlock(const TagLib::ByteVector& data) {
    attempt([&] { m_file.write(static_cast<std::uint64_t>(m_position), bytesOf(data)); });
    m_position += static_cast<long>(data.size());
}

void TagStream::insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) {
    attempt([&] { m_file.replace(start, replace, bytesOf(data)); });
}

void TagStream::removeBlock(unsigned long start, unsigned long length) {
    attempt([&] { m_file.replace(start, length, {}); });
}

void TagStream::seek(long offset, Position origin) {
    if (origin == Current) offset += m_position;
    if (origin == End) offset += length();
    m_position = offset < 0 ? 0 : offset;
}

long TagStream::length() {
    long bytes = 0;
    attempt([&] { bytes = static_cast<long>(m_file.length()); });
    return bytes;
}

void TagStream::truncate(long length) {
    attempt([&] { m_file.truncate(static_cast<std::uint64_t>(length)); });
}

} // namespace eq
