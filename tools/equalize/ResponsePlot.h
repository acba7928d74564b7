#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/ParameterText.h"

#include <string>

namespace eq {

/// An SVG picture of the response from 20 Hz to 20 kHz: each band alone, and all with the volume. Everything is
/// measured through the effect; the picture is a file of its own, and its lines can be told apart without colours.
[[nodiscard]] std::string drawResponse(const EffectLibrary& library, const NormalisedValues& values,
                                       const FrequencyMap& frequencies);

} // namespace eq
