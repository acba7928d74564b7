#pragma once

#include "parameters/ParameterNames.h"
#include "parameters/ParameterTable.h"

#include <array>
#include <string>

namespace eq {

/// The values that the effect receives, from 0 to 1.
using NormalisedValues = std::array<float, ParameterCount>;

/// Converts a normalised value to the unit of its kind. Replaces a negative zero by zero.
[[nodiscard]] double shownValueOf(ParameterKind kind, float p);

/// Returns the range of a kind of parameter as text: "-10 to 10 dB".
[[nodiscard]] std::string rangeText(ParameterKind kind);

} // namespace eq
