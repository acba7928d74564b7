#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace eq {

/// Reads and writes a translator's files. In the whole tool, a path is a byte string: UTF-8 on Windows, and the
/// system's bytes elsewhere.
namespace lngcheck {

[[nodiscard]] std::filesystem::path toPath(std::string_view path);
[[nodiscard]] std::string fromPath(const std::filesystem::path& path);

/// Returns the last part of a path.
[[nodiscard]] std::string fileName(std::string_view path);

/// Returns the path in the system's ANSI code page, as the library uses it. Throws FileError if the code page lacks a
/// letter of the path, because the library then finds no file there.
[[nodiscard]] std::string toLibraryPath(const std::string& path);
[[nodiscard]] std::string fromLibraryPath(const std::string& path);

/// The bytes of a file, or the reason why the file cannot be read.
struct Contents {
    std::string bytes;
    std::string failure; ///< the system's message; empty if the file was read to its end
};

/// Returns the contents of a whole file without any conversion. Opens only regular files, because opening a named pipe
/// would wait for a writer.
[[nodiscard]] Contents readContents(const std::string& path);

enum class Existing { Replaced, Kept };

/// Writes a whole file. The file appears under its name only when it is complete. Creates the folder of the file.
/// Throws FileError, also if the file exists and `existing` is `Kept`.
void writeContents(const std::string& path, std::string_view bytes, Existing existing);

} // namespace lngcheck

} // namespace eq
