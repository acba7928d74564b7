#include "tools/lngcheck/WholeFile.h"

#include "support/AsciiText.h"
#include "wedge/CLanguageFile.h"

#include <algorithm>
#include <sstream>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::string_view LittleEndianMark = "\xFF\xFE";
constexpr std::string_view BigEndianMark = "\xFE\xFF";

class Ignored : public CLanguageFileHandler {
    void OnTag(const std::string&, const std::string&) override {}
    void OnContext(const std::string&) override {}
    void OnString(const std::string&, const std::string&) override {}
    void OnContextEnd() override {}
    void OnFileEnd() override {}
};

/// The numbers of zeros at even and at odd places, among the first `bytes` bytes of a file.
struct Zeros {
    std::size_t even = 0;
    std::size_t odd = 0;
    std::size_t bytes = 0;
};

Zeros zerosOf(std::string_view contents) {
    constexpr std::size_t Sample = 4096;
    Zeros zeros;
    zeros.bytes = std::min(contents.size(), Sample);
    for (std::size_t i = 0; i < zeros.bytes; ++i) {
        if (contents[i] == '\0') ++(i % 2 == 0 ? zeros.even : zeros.odd);
    }
    return zeros;
}

bool hasOnlyComments(std::string_view contents) {
    bool hasOther = false;
    forEachPiece(contents, "\n", [&](std::string_view line) {
        line = trim(line);
        if (!line.empty() && !line.starts_with("//")) hasOther = true;
    });
    return !hasOther;
}

} // namespace

std::optional<WholeFileFault> faultOfWholeFile(std::string_view contents) {
    const char* const saveAsAnsi = "Notepad calls this encoding \"Unicode\" or \"UTF-16\". Save the file as ANSI.";
    if (contents.starts_with(LittleEndianMark) || contents.starts_with(BigEndianMark))
        return WholeFileFault{"the file is in UTF-16, which the library does not read", saveAsAnsi};

    const Zeros zeros = zerosOf(contents);
    const auto [fewer, more] = std::minmax(zeros.even, zeros.odd);
    if (more * 4 > zeros.bytes && fewer * 8 < more)
        return WholeFileFault{"the file is in UTF-16 without a mark, which the library does not read", saveAsAnsi};
    if ((fewer + more) * 8 > zeros.bytes)
        return WholeFileFault{"the file is not a text", "Is it another file under the name of a language file?"};

    if (contents.find('\n') == std::string_view::npos && trim(contents).find('\r') != std::string_view::npos)
        return WholeFileFault{"the line ends are those of old Macs (CR), so the library takes the file for one line",
                              "Save the file with the line ends of Windows (CR LF)."};
    if (trim(contents).empty())
        return WholeFileFault{"the file is empty", "lngcheck --init writes a file to begin with."};
    if (hasOnlyComments(contents))
        return WholeFileFault{"the file holds comments only", "Lines that begin with // are not read."};
    return std::nullopt;
}

bool isRefusedByLibrary(std::string_view contents, const std::string& path) {
    if (contents.starts_with(LittleEndianMark)) return true;
    try {
        Ignored ignored;
        std::istringstream stream{std::string(contents)};
        scanLanguageStream(stream, path, ignored);
    } catch (const CLanguageFile::base_exception&) {
        return true;
    }
    return false;
}

} // namespace lngcheck

} // namespace eq
