#pragma once

#include "support/NumberText.h"

#include <optional>
#include <string>
#include <string_view>

/// Functions that read and write numbers and settings as text. The results do not depend on the locale.
namespace eq {

/// Returns `text` without spaces, tabs and line ends at its beginning and its end. Other control characters stay.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Returns `text` in single quotes, as messages show it.
[[nodiscard]] std::string quoted(std::string_view text);

/// Returns the whole number in `text`. Returns nothing for any other text, such as one with a sign or a space.
[[nodiscard]] std::optional<int> parseIndex(std::string_view text);

/// Returns the parameter index in `text`, from 0 to `parameterCount` - 1. Returns nothing for any other text.
[[nodiscard]] std::optional<int> parseParameterIndex(std::string_view text, int parameterCount);

/// Returns the number in `text`, from 0 to 1. Throws UsageError for any other text. The message begins with `what`.
[[nodiscard]] double parseNormalised(std::string_view what, std::string_view text);

/// A parameter and its normalised value.
struct NormalisedSetting {
    int index;
    double p;
};

/// Returns the setting in the value of an option `--set INDEX=P`. Throws UsageError.
[[nodiscard]] NormalisedSetting parseSetting(std::string_view description, int parameterCount);

/// Returns `value` with `decimals` digits after the point.
[[nodiscard]] std::string fixed(double value, int decimals);

/// Returns the text of `fixed` with the sign + or -. A value that is rounded to zero has no sign.
[[nodiscard]] std::string fixedWithSign(double value, int decimals);

/// Returns the shortest text that `parseNumber` reads back as exactly `value`.
[[nodiscard]] std::string shortest(double value);

} // namespace eq
