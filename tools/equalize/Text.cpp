#include "tools/equalize/Text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace tool {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view Blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    pieces.push_back(text);
    return pieces;
}

std::optional<double> parseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<int> parseIndex(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.starts_with('-')) return std::nullopt;
    return value;
}

std::string fixed(double value, int decimals) {
    // Long enough for the largest double.
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

} // namespace tool
