#include "tools/lngcheck/Hints.h"
#include "tools/lngcheck/Languages.h"
#include "tools/lngcheck/checks/FileChecks.h"

#include <algorithm>

namespace eq {

namespace lngcheck {
namespace {

/// Returns the digits of a name that the library reads as the language.
std::string digitsOf(const std::string& name) {
    constexpr std::string_view Digits = "0123456789";
    const std::size_t first = std::min(name.find_first_of(Digits), name.size());
    return name.substr(first, name.find_first_not_of(Digits, first) - first);
}

} // namespace

void checkName(const LanguageFile& file, Findings& findings) {
    if (file.language == 0) {
        findings.add(file.path, 0, Severity::Warning,
                     "the name does not end in a language id and .lng, so the file belongs to no language",
                     hintForName(file.name));
        return;
    }
    constexpr std::size_t MostDigits = 5;
    const std::string digits = digitsOf(file.name);
    const bool isCut = digits.size() > MostDigits || std::stoul(digits) != file.language;
    if (isCut || !isLanguageOfWindows(file.language))
        findings.add(
            file.path, 0, Severity::Warning, "Windows has no language " + digits + ", so no system reads the file",
            "The number in the name is the language id, such as 1031 for German. docs/translating.md lists the "
            "ids of the shipped languages.");
}

} // namespace lngcheck

} // namespace eq
