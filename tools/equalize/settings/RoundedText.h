#pragma once

#include "tools/common/Text.h"

#include <array>
#include <charconv>
#include <string>

namespace eq {

/// Returns a number as text, with as few digits as possible, but at least six. `isSame` receives the number that a
/// reader finds in the text, and returns whether it is accurate enough.
template <typename Same>
[[nodiscard]] std::string roundedText(double value, Same isSame) {
    // Fewer digits would show whole frequencies with an exponent.
    constexpr int FewestDigits = 6;
    constexpr int MostDigits = 17;
    std::array<char, 64> text;
    for (int digits = FewestDigits; digits < MostDigits; ++digits) {
        const auto result =
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
        std::string rounded(text.data(), result.ptr);
        if (isSame(*parseNumber(rounded))) return rounded;
    }
    return shortest(value);
}

} // namespace eq
