#include "parameters/UnitText.h"

#include "support/AsciiText.h"
#include "support/NumberText.h"

namespace eq {
namespace {

constexpr std::string_view Blanks = " \t\r\n";

/// Removes `ending` and the blanks before it. Returns false if the text does not end with `ending`.
bool removeEnding(std::string_view& text, std::string_view ending) {
    if (ending.empty() || text.size() < ending.size()) return false;
    if (!equalNoCase(text.substr(text.size() - ending.size()), ending)) return false;
    text = trim_chars(text.substr(0, text.size() - ending.size()), Blanks);
    return true;
}

} // namespace

std::optional<double> parseWithUnit(ParameterKind kind, std::string_view text, const UnitWords& words) {
    text = trim_chars(text, Blanks);
    bool isThousands = false;
    if (kind == ParameterKind::Frequency) {
        isThousands = removeEnding(text, words.kilohertz);
        if (!isThousands) {
            removeEnding(text, words.hertz);
            isThousands = removeEnding(text, "k");
        }
    } else if (kind != ParameterKind::Q) {
        removeEnding(text, words.decibel);
    }
    const std::optional<double> number = parseNumber(text);
    if (!number) return std::nullopt;
    return isThousands ? *number * 1000.0 : *number;
}

} // namespace eq
