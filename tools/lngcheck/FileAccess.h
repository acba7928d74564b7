#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace eq {

/// Files of a translator. A path is a byte string everywhere in the tool: UTF-8 on Windows, the system's bytes
/// elsewhere.
namespace lngcheck {

[[nodiscard]] std::filesystem::path toPath(std::string_view path);
[[nodiscard]] std::string fromPath(const std::filesystem::path& path);

/// The last part of a path.
[[nodiscard]] std::string fileName(std::string_view path);

/// Returns the path as the library has it: in the system's ANSI code page. Throws FileError if that lacks a letter of
/// the path, because the library finds no file there.
[[nodiscard]] std::string toLibraryPath(const std::string& path);
[[nodiscard]] std::string fromLibraryPath(const std::string& path);

/// The bytes of a file, or the reason why there are none.
struct Contents {
    std::string bytes;
    std::string failure; ///< the system's words; empty if the file was read to its end
};

/// Reads a whole file without any conversion. Only regular files are opened: a named pipe would wait for a writer.
[[nodiscard]] Contents readContents(const std::string& path);

enum class Existing { Replaced, Kept };

/// Writes a whole file, which is in place only when it is complete. Creates the folder that is to hold the file. Throws
/// FileError, also if the file exists and is to be kept.
void writeContents(const std::string& path, std::string_view bytes, Existing existing);

} // namespace lngcheck

} // namespace eq
