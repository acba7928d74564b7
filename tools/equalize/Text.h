#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Numbers and lists in text, the same in every locale.
namespace tool {

/// `text` without the blanks around it.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The pieces of `text` between the separators, which may be empty; at least one.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator);

/// The number that `text` is as a whole, which may begin with a sign; nothing for infinities and NaNs.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// The whole number, without a sign, that `text` is as a whole.
[[nodiscard]] std::optional<int> parseIndex(std::string_view text);

/// `value` with a fixed number of decimals.
[[nodiscard]] std::string fixed(double value, int decimals);

/// As `fixed`, with a sign before positive numbers, too, but none before zero.
[[nodiscard]] std::string fixedWithSign(double value, int decimals);

/// The shortest text that `parseNumber` reads back as `value`.
[[nodiscard]] std::string shortest(double value);

} // namespace tool
