#pragma once

#include "support/NumberText.h"

#include <optional>
#include <string>
#include <string_view>

/// Numbers and settings in text, the same in every locale.
namespace eq {

/// Returns `text` without the blanks at its ends. Control characters other than tab and line end are no blanks.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Returns `text` in the quotes of a message.
[[nodiscard]] std::string quoted(std::string_view text);

/// The whole number, without a sign, that `text` is as a whole.
[[nodiscard]] std::optional<int> parseIndex(std::string_view text);

/// Returns the index of a parameter; nothing if there is no such parameter.
[[nodiscard]] std::optional<int> parseParameterIndex(std::string_view text, int parameterCount);

/// Returns a number from 0 to 1. Throws UsageError, which begins with `what`.
[[nodiscard]] double parseNormalised(std::string_view what, std::string_view text);

/// A parameter and its normalised value.
struct NormalisedSetting {
    int index;
    double p;
};

/// Returns the setting of an option `--set INDEX=P`. Throws UsageError.
[[nodiscard]] NormalisedSetting parseSetting(std::string_view description, int parameterCount);

/// `value` with a fixed number of decimals.
[[nodiscard]] std::string fixed(double value, int decimals);

/// As `fixed`, with a sign before positive numbers, too, but none before zero.
[[nodiscard]] std::string fixedWithSign(double value, int decimals);

/// The shortest text that `parseNumber` reads back as `value`.
[[nodiscard]] std::string shortest(double value);

} // namespace eq
