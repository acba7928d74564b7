#include "tools/lngcheck/FileAccess.h"

#include "tools/common/Errors.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#ifdef _WIN32
#include "support/TextConversion.h"

#include <fstream>
#else
#include "tools/common/OutputFile.h"
#endif

namespace eq {

namespace lngcheck {
namespace {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

std::FILE* openForReading(const std::filesystem::path& path) {
#ifdef _WIN32
    return _wfopen(path.c_str(), L"rb");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

std::string textOfError(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

#ifdef _WIN32
/// Writes a temporary file and renames it. Renaming replaces an existing file in one step.
void writeInPlace(const std::filesystem::path& path, std::string_view bytes, Existing) {
    std::filesystem::path temporary = path;
    temporary += ".unfinished";
    std::error_code error;
    if (!(std::ofstream(temporary, std::ios::binary) << bytes).flush())
        error = std::error_code(errno, std::generic_category());
    else
        std::filesystem::rename(temporary, path, error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    throw FileError(fromPath(path) + ": " + error.message());
}
#else
void writeInPlace(const std::filesystem::path& path, std::string_view bytes, Existing existing) {
    OutputFile::write(path, bytes, existing == Existing::Kept ? Replacing::Refused : Replacing::Allowed);
}
#endif

} // namespace

std::filesystem::path toPath(std::string_view path) {
#ifdef _WIN32
    return std::u8string(path.begin(), path.end());
#else
    return path;
#endif
}

std::string fromPath(const std::filesystem::path& path) {
#ifdef _WIN32
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
#else
    return path.string();
#endif
}

std::string toLibraryPath(const std::string& path) {
#ifdef _WIN32
    const std::wstring wide = toWide(path, CP_UTF8).text;
    const std::string narrow = toNarrow(wide, CP_ACP).text;
    if (toWide(narrow, CP_ACP).text != wide)
        throw FileError(path + ": the library finds no file in this folder, because the system's code page lacks a "
                               "letter of its name");
    return narrow;
#else
    return path;
#endif
}

std::string fromLibraryPath(const std::string& path) {
#ifdef _WIN32
    return toNarrow(toWide(path, CP_ACP).text, CP_UTF8).text;
#else
    return path;
#endif
}

std::string fileName(std::string_view path) {
    return fromPath(toPath(path).filename());
}

Contents readContents(const std::string& path) {
    std::error_code error;
    const auto type = std::filesystem::status(toPath(path), error).type();
    if (error) return {{}, error.message()};
    if (type == std::filesystem::file_type::not_found) return {{}, textOfError(ENOENT)};
    if (type != std::filesystem::file_type::regular) return {{}, "it is a pipe, a folder or a device, not a file"};

    const std::unique_ptr<std::FILE, StreamCloser> stream(openForReading(toPath(path)));
    if (!stream) return {{}, textOfError(errno)};
    Contents contents;
    std::array<char, 65536> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream.get()))
        contents.bytes.append(buffer.data(), count);
    if (std::ferror(stream.get()) != 0) return {{}, textOfError(errno)};
    return contents;
}

void writeContents(const std::string& path, std::string_view bytes, Existing existing) {
    const std::filesystem::path place = toPath(path);
    std::error_code error;
    if (existing == Existing::Kept && std::filesystem::exists(place, error))
        throw FileError(path + ": the file exists and was not changed; delete it, or name another file");
    if (place.has_parent_path()) std::filesystem::create_directories(place.parent_path(), error);
    if (error) throw FileError(fromPath(place.parent_path()) + ": " + error.message());
    writeInPlace(place, bytes, existing);
}

} // namespace lngcheck

} // namespace eq
