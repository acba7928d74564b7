#include "tools/equalize/pipes/PipeSource.h"

#include "tools/common/Errors.h"
#include "tools/common/SpoolFile.h"
#include "tools/equalize/pipes/Waiting.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

namespace eq {
namespace {

constexpr std::size_t PieceSize = 65536;

} // namespace

PipeSource::PipeSource(FileDescriptor pipe, std::string name) : m_pipe(std::move(pipe)), m_name(std::move(name)) {}

std::size_t PipeSource::receive(char* bytes, std::size_t count) {
    if (m_isOver) return 0;
    ssize_t done = 0;
    do done = ::read(m_pipe.get(), bytes, count);
    while (done < 0 && mayTryAgain(m_pipe.get(), Direction::Reading));
    m_isOver = done <= 0;
    if (done < 0) m_error = errno;
    if (done <= 0) return 0;
    const std::string_view received(bytes, static_cast<std::size_t>(done));
    m_received += received.size();
    m_kept += received.substr(0, KeptBytes - m_kept.size());
    if (m_isOgg) m_ogg.add(received);
    return received.size();
}

std::string_view PipeSource::head(std::size_t count) {
    count = std::min(count, KeptBytes);
    std::array<char, PieceSize> piece;
    while (m_kept.size() < count && receive(piece.data(), std::min(piece.size(), count - m_kept.size())) > 0) {
    }
    requireSuccess();
    return std::string_view(m_kept).substr(0, count);
}

void PipeSource::correct(std::uint64_t position, std::string_view bytes) {
    m_kept.replace(static_cast<std::size_t>(position), bytes.size(), bytes);
}

void PipeSource::watchOgg() {
    m_isOgg = true;
    m_ogg.add(m_kept);
}

std::size_t PipeSource::read(char* bytes, std::size_t count) {
    std::size_t done = 0;
    while (done < count && m_position < m_end) {
        const std::size_t most = static_cast<std::size_t>(std::min<std::uint64_t>(count - done, m_end - m_position));
        if (m_position < m_kept.size()) {
            const std::size_t part = std::min(most, m_kept.size() - static_cast<std::size_t>(m_position));
            std::memcpy(bytes + done, m_kept.data() + m_position, part);
            m_position += part;
            done += part;
        } else if (m_position < m_received) {
            m_hasGoneBackTooFar = true;
            break;
        } else if (m_position > m_received) {
            std::array<char, PieceSize> skipped;
            if (receive(skipped.data(),
                        static_cast<std::size_t>(std::min<std::uint64_t>(PieceSize, m_position - m_received))) == 0)
                break;
        } else {
            const std::size_t part = receive(bytes + done, most);
            if (part == 0) break;
            m_position += part;
            done += part;
        }
    }
    return done;
}

void PipeSource::drain() {
    std::array<char, PieceSize> piece;
    while (receive(piece.data(), piece.size()) > 0) {
    }
}

void PipeSource::copyAll(int file) {
    const auto write = [&](std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t done = ::write(file, bytes.data(), bytes.size());
            if (done < 0 && errno == EINTR) continue;
            if (done < 0)
                throw systemError(m_name + ": cannot be copied into a temporary file in " + spoolFolder() +
                                      " (TMPDIR selects another folder)",
                                  errno);
            bytes.remove_prefix(static_cast<std::size_t>(done));
        }
    };
    write(m_kept);
    std::array<char, PieceSize> piece;
    while (const std::size_t count = receive(piece.data(), piece.size())) write({piece.data(), count});
    requireSuccess();
}

void PipeSource::requireSuccess() const {
    if (m_error != 0) throw systemError(m_name, m_error);
    if (m_hasGoneBackTooFar)
        throw FileError(m_name + ": a pipe cannot be read backwards, as its format requires; save it in a file first");
    if (m_isOgg && m_isOver && !m_ogg.fault().empty()) throw FileError(m_name + ": " + m_ogg.fault());
}

SF_VIRTUAL_IO PipeSource::functions() {
    SF_VIRTUAL_IO functions = {};
    functions.get_filelen = [](void*) -> sf_count_t { return Length; };
    functions.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
        auto& source = *static_cast<PipeSource*>(data);
        if (whence == SEEK_CUR) offset += static_cast<sf_count_t>(source.m_position);
        if (whence == SEEK_END) offset += Length;
        if (offset < 0) return -1;
        source.m_position = static_cast<std::uint64_t>(offset);
        return offset;
    };
    functions.tell = [](void* data) -> sf_count_t {
        return static_cast<sf_count_t>(static_cast<PipeSource*>(data)->m_position);
    };
    functions.read = [](void* bytes, sf_count_t count, void* data) -> sf_count_t {
        auto& source = *static_cast<PipeSource*>(data);
        return static_cast<sf_count_t>(source.read(static_cast<char*>(bytes), static_cast<std::size_t>(count)));
    };
    functions.write = [](const void*, sf_count_t, void*) -> sf_count_t { return 0; };
    return functions;
}

} // namespace eq
