#include "support/TextConversion.h"
#include "tools/lngcheck/TextWidth.h"
#include "tools/lngcheck/checks/TextChecks.h"
#include "wedge/CLanguageFile.h"

#include <algorithm>

namespace eq {

namespace lngcheck {
namespace {

bool isControl(wchar_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

/// Checks the length of a unit in bytes. The text of a read-out is in the system's code page. On Windows, it is usually
/// the code page of the file, and on Linux it is UTF-8.
void checkUnitBytes(const CheckedText& text) {
    const std::size_t inUnicode = inUtf8(text.text()).size();
    if (inUnicode > 2 * text.text().size() + 1)
        text.warn("the unit is not shown where the system's code page is UTF-8",
                  "On Linux this unit is not shown. Use Latin letters.");
    const std::size_t unit = std::max(decode_value(text.definition().value).size(), inUnicode);
    const std::size_t bytes = text.known().number.size() + unit;
    if (bytes <= MostDisplayBytes) return;
    text.report(Severity::Fault,
                "the read-out with this unit has " + std::to_string(bytes) + " bytes, but only " +
                    std::to_string(MostDisplayBytes) + " are shown",
                "The unit is too long: at most " + std::to_string(MostDisplayBytes - text.known().number.size()) +
                    " bytes.");
}

void checkWidth(const CheckedText& text) {
    const std::wstring number = toWide(text.known().number, CP_UTF8).text;
    const int needed = textWidth(number + text.text());
    const int available = controlWidth(text.known().width);
    if (needed <= available) return;
    text.warn("'" + inUtf8(number) + text.quoted().substr(1) + " needs about " + std::to_string(needed) +
                  " pixels, but its place has " + std::to_string(available),
              "The end of the text is cut off. Write a shorter text.");
}

} // namespace

void checkSpace(const CheckedText& text) {
    if (text.text().empty())
        text.report(Severity::Fault, "the text is empty",
                    "Write the text, or delete the line: another file may have the text.");
    if (std::ranges::any_of(text.text(), isControl))
        text.warn("the text holds a control character, and shows in one line",
                  "Line ends (\\n, \\r), tabs (\\t) and \\x01 to \\x1F do not work in labels.");
    if (!text.known().number.empty()) checkUnitBytes(text);
    checkWidth(text);
}

} // namespace lngcheck

} // namespace eq
