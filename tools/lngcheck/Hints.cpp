#include "tools/lngcheck/Hints.h"

#include "support/AsciiText.h"
#include "tools/lngcheck/Languages.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageTag.h"

#include <vector>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::string_view Digits = "0123456789";

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string listed(const std::vector<UINT>& numbers) {
    std::string list;
    for (const UINT number : numbers) list += (list.empty() ? "" : ", ") + std::to_string(number);
    return list;
}

std::string hintForCodepage(std::string_view line, const std::string& name) {
    const WORD language = languageOfTag(name);
    const std::string isLanguage = "The number in the file's name, " + described(language) + ", is the language";
    if (language == 0)
        return "The name must end in the language id and .lng, as in Equalizer1031.lng. This name has no number there, "
               "so "
               "no code page suits the file.";
    if (isPrimaryLanguage(language))
        return isLanguage +
               ", and a number below 1024 is a language without a country. Its file must have no <CODEPAGE> "
               "tag: delete this line, and use ASCII letters only.";
    if (codepagesOf(language).empty())
        return isLanguage +
               ", and the library accepts no code page for it: delete this line, and use ASCII letters only.";

    std::string reason;
    const std::string tag(line.substr(0, line.find('>') + 1));
    const LanguageTagPtr record = ParseLanguageTag(tag, reason);
    const CodepageDefinition* const definition = record ? asCodepage(*record) : nullptr;
    const std::string number = definition ? std::to_string(definition->codepage) : "of the tag";
    const UINT usual = ansiCodepageOf(language);
    return isLanguage + ". Code page " + number + " is for other languages. " +
           (usual != 0 ? "Write <CODEPAGE " + std::to_string(usual) + ">, and save the file in it."
                       : "The code pages of this language are " + listed(codepagesOf(language)) + ".");
}

std::string hintForTag(std::string_view line, const std::string& name) {
    if (equalNoCase(trim(line.substr(1)).substr(0, 5), "accel"))
        return "Write <ACCEL keys> = <ACCEL keys>. Keys are named VK_F5 and so on, letters, digits, SHIFT, CONTROL, "
               "ALT.";
    if (isCodepageTag(line)) {
        const UINT usual = ansiCodepageOf(languageOfTag(name));
        return "Write <CODEPAGE " + std::to_string(usual == 0 ? 1252 : usual) + ">: one number, nothing after the >.";
    }
    return "A line that begins with < is a tag: <CODEPAGE 1252>, or <ACCEL keys> = <ACCEL keys>. A text needs its key "
           "and = before it.";
}

} // namespace

WORD languageOfTag(std::string_view name) noexcept {
    const std::size_t point = name.rfind('.');
    if (point == std::string_view::npos) return 0;
    std::size_t first = point;
    while (first > 0 && contains(Digits, name.substr(first - 1, 1))) --first;
    return languageOfDigits(name.substr(first, point - first));
}

bool isCodepageTag(std::string_view line) noexcept {
    line = trim(line);
    return line.starts_with('<') && equalNoCase(trim(line.substr(1)).substr(0, 4), "code");
}

std::string hintFor(const std::string& message, std::string_view line, int lineNumber, const LanguageFile& file) {
    const bool isMarked = lineNumber == 1 && line.starts_with(Utf8Mark);
    line = trim(line);
    if (contains(message, "codepage does not appear to match")) return hintForCodepage(line, file.name);
    if (line.starts_with('<')) return hintForTag(line, file.name);
    if (isMarked)
        return "The file begins with a UTF-8 mark, which the library reads as a part of this line. Save the file as "
               "ANSI.";
    return "This line needs  key = text.  Comments begin with //.";
}

std::string hintForMissingTag(const LanguageFile& file) {
    const UINT codepage = ansiCodepageOf(file.language);
    if (codepage != 0) return "Write <CODEPAGE " + std::to_string(codepage) + "> above the first [context].";
    if (file.language == 0) return "The file's name contains no language id, so the file can have no <CODEPAGE> tag.";
    return "A file of the language " + described(file.language) +
           " can have no <CODEPAGE> tag: use ASCII letters only.";
}

std::string hintForName(const std::string& name) {
    const std::size_t first = name.find_first_of(Digits);
    if (first == std::string::npos) return "Put the language id before .lng, as in Equalizer1031.lng for German.";
    const std::string number = name.substr(first, name.find_first_not_of(Digits, first) - first);
    return "The first number in the name is the language id, and .lng must follow it. Here the number is " + number +
           ": write a name without other digits, as Equalizer1031.lng for German.";
}

} // namespace lngcheck

} // namespace eq
