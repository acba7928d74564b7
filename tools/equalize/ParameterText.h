#pragma once

#include "parameters/ParameterTable.h"

#include <array>
#include <string>

namespace eq {

/// The values that the effect receives, from 0 to 1.
using NormalisedValues = std::array<float, ParameterCount>;

/// Returns a parameter's name in presets: "volume", "band1.freq", "band1.gain", "band1.q" and so on.
[[nodiscard]] std::string presetNameOf(const Parameter& parameter);

/// Returns the value in its unit, without a negative zero.
[[nodiscard]] double shownValueOf(ParameterKind kind, float p);

/// Returns a range as text: "-10 to 10 dB".
[[nodiscard]] std::string rangeText(ParameterKind kind);

} // namespace eq
