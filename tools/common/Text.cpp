#include "tools/common/Text.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace eq {

std::string_view trimmed(std::string_view text) {
    return trim_chars(text, " \t\r\n");
}

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

std::optional<int> parseIndex(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.starts_with('-')) return std::nullopt;
    return value;
}

std::optional<int> parseParameterIndex(std::string_view text, int parameterCount) {
    const std::optional<int> index = parseIndex(trimmed(text));
    return index && *index < parameterCount ? index : std::nullopt;
}

double parseNormalised(std::string_view what, std::string_view text) {
    const std::optional<double> value = parseNumber(trimmed(text));
    if (!value || *value < 0.0 || *value > 1.0)
        throw UsageError(std::string(what) + ": " + quoted(trimmed(text)) + " is not a number from 0 to 1");
    return *value;
}

NormalisedSetting parseSetting(std::string_view description, int parameterCount) {
    const std::string what = "--set " + std::string(description);
    const std::size_t equals = description.find('=');
    if (equals == std::string_view::npos) throw UsageError(what + ": it must be of the form INDEX=P");
    const std::optional<int> index = parseParameterIndex(description.substr(0, equals), parameterCount);
    if (!index) throw UsageError(what + ": the index must be 0 to " + std::to_string(parameterCount - 1));
    return {*index, parseNormalised(what, description.substr(equals + 1))};
}

std::string fixed(double value, int decimals) {
    // The largest double has 309 digits before the point.
    std::array<char, 400> text;
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return {text.data(), result.ptr};
}

std::string fixedWithSign(double value, int decimals) {
    std::string magnitude = fixed(std::fabs(value), decimals);
    if (magnitude.find_first_not_of("0.") == std::string::npos) return magnitude;
    return (value < 0.0 ? "-" : "+") + magnitude;
}

std::string shortest(double value) {
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

} // namespace eq
