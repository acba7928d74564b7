#include "tools/equalize/UnitText.h"

#include "support/AsciiText.h"
#include "tools/common/Text.h"

namespace eq {
namespace {

/// Removes `ending` and the blanks before it. Returns false if the text ends otherwise.
bool removeEnding(std::string_view& text, std::string_view ending) {
    if (text.size() < ending.size() || !equalNoCase(text.substr(text.size() - ending.size()), ending)) return false;
    text = trimmed(text.substr(0, text.size() - ending.size()));
    return true;
}

} // namespace

std::optional<double> parseWithUnit(ParameterKind kind, std::string_view text) {
    text = trimmed(text);
    const std::string_view unit = scaleOf(kind).unit;
    if (!unit.empty()) removeEnding(text, unit);
    const bool isThousands = kind == ParameterKind::Frequency && removeEnding(text, "k");
    const std::optional<double> number = parseNumber(text);
    if (!number) return std::nullopt;
    return isThousands ? *number * 1000.0 : *number;
}

} // namespace eq
