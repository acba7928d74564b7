#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Reads and writes the bytes of an open file at any position. Copies and moves need constant memory. Every system
/// error throws FileError with the file's name. The caller owns the descriptor.
class FileBytes {
public:
    FileBytes(int descriptor, std::string name) : m_descriptor(descriptor), m_name(std::move(name)) {}

    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] std::uint64_t length() const;

    /// Returns `count` bytes, or fewer at the end of the file.
    [[nodiscard]] std::string read(std::uint64_t position, std::size_t count) const;

    void write(std::uint64_t position, std::string_view bytes) const;

    /// Copies `count` bytes from position `from` of `source` to position `to` of this file. If `source` is this file,
    /// `to` must not be above `from`.
    void copy(const FileBytes& source, std::uint64_t from, std::uint64_t to, std::uint64_t count) const;

    /// Replaces `count` bytes at `position` by `bytes`, and moves the rest of the file.
    void replace(std::uint64_t position, std::uint64_t count, std::string_view bytes) const;

    void truncate(std::uint64_t length) const;

private:
    int m_descriptor;
    std::string m_name;
};

} // namespace eq
