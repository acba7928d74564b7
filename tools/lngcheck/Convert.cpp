#include "tools/lngcheck/Convert.h"

#include "support/AsciiText.h"
#include "support/TextConversion.h"
#include "tools/common/Errors.h"
#include "tools/lngcheck/FileAccess.h"
#include "tools/lngcheck/Hints.h"
#include "tools/lngcheck/Languages.h"
#include "tools/lngcheck/ShippedTexts.h"
#include "wedge/Codepages.h"
#include "wedge/LanguageSelection.h"
#include "wedge/LanguageTag.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace eq {

namespace lngcheck {
namespace {

bool isLanguageFileName(const std::string& path) {
    const std::string_view ending = ".lng";
    return path.size() > ending.size() &&
           equalNoCase(std::string_view(path).substr(path.size() - ending.size()), ending);
}

/// Returns the code page in a code page tag; nothing for another line.
std::optional<UINT> codepageOf(std::string_view line) {
    line = trim(line);
    if (!line.starts_with('<')) return std::nullopt;
    std::string reason;
    const LanguageTagPtr record = ParseLanguageTag(std::string(line.substr(0, line.find('>') + 1)), reason);
    const CodepageDefinition* const definition = record ? asCodepage(*record) : nullptr;
    return definition ? std::optional(static_cast<UINT>(definition->codepage)) : std::nullopt;
}

/// Calls `visit` with each line, without its line end, and with the number of the line. After a line end at the end of
/// the text, there is no further line.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
    int number = 0;
    if (text.ends_with('\n')) text.remove_suffix(1);
    forEachPiece(text, "\n", [&](std::string_view line) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        visit(line, ++number);
    });
}

UINT firstCodepage(std::string_view text) {
    UINT first = 0;
    forEachLine(text, [&](std::string_view line, int) {
        if (first == 0) first = codepageOf(line).value_or(0);
    });
    return first;
}

[[noreturn]] void failAt(const std::string& path, int line, const std::string& reason) {
    throw FileError(path + ":" + std::to_string(line) + ": " + reason);
}

/// Returns whether the line contains only ASCII characters, also after its escapes are decoded.
bool isAsciiLine(std::string_view line) {
    constexpr std::string_view HighDigits = "89ABCDEFabcdef";
    for (std::size_t at = line.find("\\x"); at < line.size(); at = line.find("\\x", at + 1)) {
        const std::string_view digit = line.substr(at + 2, 1);
        if (!digit.empty() && HighDigits.find(digit) != std::string_view::npos) return false;
    }
    return std::ranges::all_of(line, isAscii);
}

/// Returns the first character that the code page lacks, for a message.
std::string firstLacked(std::wstring_view text, UINT codepage) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::wstring_view c = text.substr(i, 1);
        if (toWide(toNarrow(c, codepage).text, codepage).text != c) return inUtf8(c);
    }
    return inUtf8(text);
}

/// Converts the lines of a text in UTF-8 to the lines of a language file.
class ToLanguageFile {
public:
    ToLanguageFile(const std::string& from, const std::string& to, std::string_view text)
        : m_from(from), m_language(languageOfTag(fileName(to))), m_codepage(firstCodepage(text)) {
        forEachLine(text, [this](std::string_view line, int number) { add(line, number); });
    }

    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

    /// Returns a message about the lines that were left out, or an empty text.
    [[nodiscard]] std::string message() const {
        std::string text;
        if (m_hasPortNames) text = "left out: the context [LV2], which the library does not read";
        if (m_leftOut.empty()) return text;
        return text + (text.empty() ? "" : "; ") + "a file of the language " + described(m_language) +
               " must have no tag and only ASCII texts; left out: line" +
               (m_leftOut.find(',') == std::string::npos ? " " : "s ") + m_leftOut;
    }

private:
    void add(std::string_view line, int number) {
        if (line.starts_with('[')) m_isPortName = line.starts_with("[LV2]");
        m_hasPortNames = m_hasPortNames || m_isPortName;
        if (m_isPortName) return;
        if (const auto codepage = codepageOf(line)) {
            m_codepage = *codepage;
            if (!isPrimaryLanguage(m_language) && !CodepageFitsLanguage(static_cast<long>(m_codepage), m_language))
                failAt(m_from, number,
                       "code page " + std::to_string(m_codepage) + " does not suit the language " +
                           described(m_language) + ", which is the number in the name of the new file");
        }
        if (isPrimaryLanguage(m_language) && (codepageOf(line) || !isAsciiLine(line))) {
            m_leftOut += (m_leftOut.empty() ? "" : ", ") + std::to_string(number);
            return;
        }
        m_bytes += converted(line, number) + "\r\n";
    }

    [[nodiscard]] std::string converted(std::string_view line, int number) const {
        if (std::ranges::all_of(line, isAscii)) return std::string(line);
        const auto [text, error] = toWide(line, CP_UTF8, InvalidBytes::Refused);
        if (error != ERROR_SUCCESS) failAt(m_from, number, "this is not UTF-8: save the text as UTF-8");
        if (m_codepage == 0) failAt(m_from, number, "no <CODEPAGE> tag names the code page for these letters");
        std::string bytes = toNarrow(text, m_codepage).text;
        if (toWide(bytes, m_codepage, InvalidBytes::Refused).text != text)
            failAt(m_from, number,
                   "code page " + std::to_string(m_codepage) + " has no '" + firstLacked(text, m_codepage) + "'");
        return bytes;
    }

    const std::string& m_from;
    WORD m_language;
    UINT m_codepage;
    std::string m_bytes;
    std::string m_leftOut;     ///< the numbers of the lines that were left out
    bool m_isPortName = false; ///< the line is in the context [LV2] of the shipped sources
    bool m_hasPortNames = false;
};

std::string toUtf8(const std::string& from, std::string_view bytes) {
    std::string text;
    UINT codepage = firstCodepage(bytes);
    forEachLine(bytes, [&](std::string_view line, int number) {
        codepage = codepageOf(line).value_or(codepage);
        if (!std::ranges::all_of(line, isAscii)) {
            if (codepage == 0) failAt(from, number, "no <CODEPAGE> tag names the code page of these letters");
            const auto [wide, error] = toWide(line, codepage, InvalidBytes::Refused);
            if (error != ERROR_SUCCESS || toNarrow(wide, codepage).text != line)
                failAt(from, number, "this is not a text in code page " + std::to_string(codepage));
            text += inUtf8(wide) + "\n";
        } else {
            text += std::string(line) + "\n";
        }
    });
    return text;
}

std::string contentsOf(const std::string& path) {
    Contents contents = readContents(path);
    if (!contents.failure.empty()) throw FileError(path + ": " + contents.failure);
    return std::move(contents.bytes);
}

/// Returns the line of a new file for a line of the English source.
std::string newLine(std::string_view line) {
    const std::size_t equal = line.find('=');
    if (equal == std::string_view::npos || line.starts_with("//")) return std::string(line) + "\r\n";
    const std::string_view key = trim(line.substr(0, equal));
    const bool isTheSameNearlyEverywhere = languagesWithEnglishText(key) * 2 > shippedLanguages();
    return "// English: " + std::string(trim(line.substr(equal + 1))) + "\r\n" + std::string(key) + " = " +
           (isTheSameNearlyEverywhere ? std::string(trim(line.substr(equal + 1))) : "") + "\r\n";
}

} // namespace

std::string convertFile(const std::string& from, const std::string& to) {
    if (isLanguageFileName(from) == isLanguageFileName(to))
        throw UsageError(
            "--convert: one of the two names must end in .lng, and the other, of a text in UTF-8, must not");
    std::string contents = contentsOf(from);
    if (isLanguageFileName(from)) {
        writeContents(to, toUtf8(from, contents), Existing::Replaced);
        return {};
    }
    if (contents.starts_with(Utf8Mark)) contents.erase(0, Utf8Mark.size());
    const ToLanguageFile result(from, to, contents);
    writeContents(to, result.bytes(), Existing::Replaced);
    return result.message();
}

void writeNewFile(WORD language, const std::string& path) {
    if (language == 0 || ParseLanguageFileName(fileName(path), "", "lng") != language)
        throw UsageError("--init: the name of the file must end in the language id and .lng, as in Equalizer" +
                         std::to_string(language == 0 ? 1031 : language) + ".lng");
    const UINT codepage = ansiCodepageOf(language);
    std::string contents = "// Texts of the Parametric Equalizer, language " + described(language) + "\r\n" +
                           "// Write a text after each =. lngcheck names the lines without one.\r\n";
    contents += codepage != 0
                    ? "<CODEPAGE " + std::to_string(codepage) + ">\r\n"
                    : "// The library accepts no code page tag for this language: use ASCII letters only.\r\n";
    bool isInHead = true;
    forEachLine(englishSource(), [&](std::string_view line, int) {
        // The comments at the start of the source are for maintainers only.
        if (line.starts_with('[')) isInHead = false;
        if (!isInHead) contents += (line.starts_with('[') ? "\r\n" : "") + newLine(line);
    });
    writeContents(path, contents, Existing::Kept);
}

} // namespace lngcheck

} // namespace eq
