#include "parameters/DisplayText.h"

#include "platform/win32.h"
#include "support/LanguageText.h"
#include "wedge/OwnModule.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace eq {

namespace {

// Returns the value with one decimal, or an empty text for a number of more than 64 characters. `sprintf` with "%.1f"
// would use the decimal separator of the host's locale.
std::string oneDecimal(double value) {
    char digits[64];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 1);
    return error == std::errc() ? std::string(digits, end) : std::string();
}

std::string signedDecimal(double value) {
    const std::string text = oneDecimal(value == 0.0 ? 0.0 : value); // a negative zero is shown with a plus sign
    return text.starts_with('-') ? text : "+" + text;
}

// Returns the value truncated toward zero. The value may be outside the parameter's range: a value that is too large
// for an integer is limited, and a NaN counts as 0.
std::string integerPart(double value) {
    constexpr double Most = std::numeric_limits<std::int32_t>::max();
    return std::to_string(std::isnan(value) ? 0 : static_cast<std::int32_t>(std::min(value, Most)));
}

DisplayParts frequencyParts(double hertz) {
    const auto f = static_cast<float>(hertz);
    if (hertz < LowestInKilohertz) return {integerPart(f + 0.5), HertzKey};
    if (f < LowestInWholeKilohertz) return {oneDecimal(f * 0.001), KilohertzKey};
    return {integerPart(f * 0.001 + 0.5), KilohertzKey};
}

} // namespace

DisplayParts displayPartsOf(ParameterKind kind, double value) {
    switch (kind) {
    case ParameterKind::Frequency:
        return frequencyParts(value);
    case ParameterKind::Q:
        return {oneDecimal(value), nullptr};
    default:
        return {signedDecimal(value), DecibelKey};
    }
}

void writeDisplay(const Parameter& parameter, float p, char* text) {
    auto [full, unitKey] = displayPartsOf(parameter.kind, valueOf(parameter.kind, p));
    if (unitKey != nullptr) {
        LanguageText unit(unitKey, ownModule());
        const char* const word = unit.narrow();
        full.append(" ").append(word != nullptr ? word : "");
    }
    const std::size_t length = full.copy(text, wholeCharacters(full, DisplayCapacity - 1, CP_ACP));
    text[length] = '\0';
}

} // namespace eq
