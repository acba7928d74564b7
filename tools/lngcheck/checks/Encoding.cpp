#include "support/AsciiText.h"
#include "support/TextConversion.h"
#include "tools/lngcheck/checks/FileChecks.h"

#include <algorithm>

namespace eq {

namespace lngcheck {

void checkUtf8(const LanguageFile& file, Findings& findings) {
    std::string values;
    for (const Definition& definition : file.definitions) values += definition.value + "\n";
    if (std::ranges::all_of(values, isAscii)) return;
    if (toWide(values, CP_UTF8, InvalidBytes::Refused).error != ERROR_SUCCESS) return;
    findings.add(file.path, 0, Severity::Warning,
                 "the texts look like UTF-8, which the library does not read: save the file in the code page that its "
                 "<CODEPAGE> tag names",
                 "lngcheck --convert writes a language file from a text in UTF-8.");
}

void checkBackslashes(const LanguageFile& file, Findings& findings) {
    for (const Definition& definition : file.definitions) {
        const std::string& value = definition.value;
        std::size_t at = value.find('\\', 1);
        while (at < value.size() && isAscii(value[at - 1])) at = value.find('\\', at + 1);
        if (at >= value.size()) continue;
        findings.add(
            file.path, definition.line, Severity::Warning,
            "a backslash, or a letter whose second byte is a backslash, follows a byte outside ASCII: systems "
            "with another code page read it differently",
            "On other systems, the \\ may count as a part of the letter before it. Write a blank or another word "
            "between them.");
    }
}

} // namespace lngcheck

} // namespace eq
