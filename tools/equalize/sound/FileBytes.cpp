#include "tools/equalize/sound/FileBytes.h"

#include "tools/common/Errors.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

constexpr std::uint64_t PieceSize = 65536;

} // namespace

std::uint64_t FileBytes::length() const {
    struct stat file = {};
    if (fstat(m_descriptor, &file) != 0) throw systemError(m_name, errno);
    return static_cast<std::uint64_t>(file.st_size);
}

std::string FileBytes::read(std::uint64_t position, std::size_t count) const {
    const std::uint64_t present = length();
    std::string bytes(position < present ? std::min<std::uint64_t>(count, present - position) : 0, '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t part =
            pread(m_descriptor, bytes.data() + done, bytes.size() - done, static_cast<off_t>(position + done));
        if (part < 0 && errno == EINTR) continue;
        if (part < 0) throw systemError(m_name, errno);
        if (part == 0) break;
        done += static_cast<std::size_t>(part);
    }
    bytes.resize(done);
    return bytes;
}

void FileBytes::write(std::uint64_t position, std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t part = pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (part < 0 && errno == EINTR) continue;
        if (part < 0) throw systemError(m_name, errno);
        bytes.remove_prefix(static_cast<std::size_t>(part));
        position += static_cast<std::uint64_t>(part);
    }
}

void FileBytes::copy(const FileBytes& source, std::uint64_t from, std::uint64_t to, std::uint64_t count) const {
    for (std::uint64_t done = 0; done < count;) {
        const std::string piece = source.read(from + done, std::min(count - done, PieceSize));
        if (piece.empty()) throw FileError(source.name() + ": the file became shorter while it was read");
        write(to + done, piece);
        done += piece.size();
    }
}

void FileBytes::replace(std::uint64_t position, std::uint64_t count, std::string_view bytes) const {
    const std::uint64_t end = length();
    const std::uint64_t tail = position + count;
    const std::uint64_t newTail = position + bytes.size();
    if (newTail <= tail) {
        copy(*this, tail, newTail, end - tail);
        truncate(newTail + (end - tail));
    } else {
        // Move the last piece first, so that no piece overwrites another piece that is not moved yet.
        for (std::uint64_t left = end - tail; left > 0;) {
            const std::uint64_t size = std::min(left, PieceSize);
            left -= size;
            write(newTail + left, read(tail + left, size));
        }
    }
    write(position, bytes);
}

void FileBytes::truncate(std::uint64_t length) const {
    if (ftruncate(m_descriptor, static_cast<off_t>(length)) != 0) throw systemError(m_name, errno);
}

} // namespace eq
