#include "tools/equalize/pipes/PipeSink.h"

#include "tools/common/Errors.h"
#include "tools/equalize/pipes/StreamHeader.h"
#include "tools/equalize/pipes/Waiting.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <unistd.h>

namespace eq {

PipeSink::PipeSink(FileDescriptor stream, std::string name, int format, CompleteHeader complete)
    : m_stream(std::move(stream)), m_name(std::move(name)), m_format(format), m_complete(std::move(complete)) {}

void PipeSink::send(std::string_view bytes) {
    while (!bytes.empty() && m_error == 0) {
        const ssize_t done = ::write(m_stream.get(), bytes.data(), bytes.size());
        if (done < 0 && mayTryAgain(m_stream.get(), Direction::Writing)) continue;
        if (done < 0) m_error = errno;
        if (done > 0) bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

void PipeSink::sendHeader(std::size_t size) {
    m_isHeaderSent = true;
    try {
        const std::string rest = m_header.substr(size);
        m_header.resize(size);
        const std::uint32_t pages = OggPages::count(m_header);
        const std::string header = m_complete(std::move(m_header));
        if ((m_format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG) m_pages = OggPages(OggPages::count(header) - pages);
        send(header);
        send(m_pages.add(rest));
    } catch (...) {
        // libsndfile calls this function, and an exception must not pass through libsndfile.
        m_failure = std::current_exception();
        m_error = ECANCELED;
    }
    m_header.clear();
}

void PipeSink::append(std::string_view bytes) {
    if (m_isHeaderSent) {
        if ((m_format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG)
            send(m_pages.add(bytes));
        else
            send(bytes);
        return;
    }
    m_header += bytes;
    if (!m_hasSound) return;
    const std::optional<std::size_t> size = streamHeaderSize(m_format, m_header);
    if (size && *size < m_header.size()) sendHeader(*size);
}

sf_count_t PipeSink::write(std::string_view bytes) {
    const auto count = static_cast<sf_count_t>(bytes.size());
    if (m_position == 0 && !m_isHeaderSent) {
        // libsndfile writes the complete header several times before the first sample. Keep only the last one.
        m_header.clear();
        m_length = 0;
    }
    const sf_count_t known = std::clamp<sf_count_t>(m_length - m_position, 0, count);
    m_position += count;
    m_length = std::max(m_length, m_position);
    bytes.remove_prefix(static_cast<std::size_t>(known));
    if (!m_isEnded && !bytes.empty()) append(bytes);
    return m_error == 0 ? count : 0;
}

void PipeSink::endSound() {
    m_isEnded = isPlain(m_format) && m_isHeaderSent;
}

void PipeSink::finish(std::string_view trailer) {
    if (!m_isHeaderSent)
        if (const std::optional<std::size_t> size = streamHeaderSize(m_format, m_header)) sendHeader(*size);
    send(trailer);
    requireSuccess();
    if (!m_stream.reset()) throw systemError(m_name, errno);
}

void PipeSink::requireSuccess() const {
    if (m_failure) std::rethrow_exception(m_failure);
    if (m_error == EPIPE)
        throw FileError(m_name +
                        ": the program that reads the output ended before it had read the whole sound (broken pipe)");
    if (m_error != 0) throw systemError(m_name, m_error);
}

SF_VIRTUAL_IO PipeSink::functions() {
    SF_VIRTUAL_IO functions = {};
    functions.get_filelen = [](void* data) -> sf_count_t { return static_cast<PipeSink*>(data)->m_length; };
    functions.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
        auto& sink = *static_cast<PipeSink*>(data);
        if (whence == SEEK_CUR) offset += sink.m_position;
        if (whence == SEEK_END) offset += sink.m_length;
        if (offset < 0 || offset > sink.m_length) return -1;
        sink.m_position = offset;
        return offset;
    };
    functions.tell = [](void* data) -> sf_count_t { return static_cast<PipeSink*>(data)->m_position; };
    functions.read = [](void*, sf_count_t, void*) -> sf_count_t { return 0; };
    functions.write = [](const void* bytes, sf_count_t count, void* data) -> sf_count_t {
        return static_cast<PipeSink*>(data)->write({static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    };
    return functions;
}

} // namespace eq
