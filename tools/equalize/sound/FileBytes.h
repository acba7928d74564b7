#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// The bytes of an open file, read and written at any position in constant memory. Every failure of the system throws
/// FileError with the file's name. The caller owns the descriptor.
class FileBytes {
public:
    FileBytes(int descriptor, std::string name) : m_descriptor(descriptor), m_name(std::move(name)) {}

    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] std::uint64_t length() const;

    /// Returns `count` bytes, and fewer only at the end of the file.
    [[nodiscard]] std::string read(std::uint64_t position, std::size_t count) const;

    void write(std::uint64_t position, std::string_view bytes) const;

    /// Copies bytes of another file, or bytes of this file to a lower position.
    void copy(const FileBytes& source, std::uint64_t from, std::uint64_t to, std::uint64_t count) const;

    /// Replaces `count` bytes with others. The bytes after them move.
    void replace(std::uint64_t position, std::uint64_t count, std::string_view bytes) const;

    void truncate(std::uint64_t length) const;

private:
    int m_descriptor;
    std::string m_name;
};

} // namespace eq
