#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/ParameterText.h"

#include <functional>
#include <string>
#include <vector>

namespace eq {

/// Returns decibels at a frequency in Hz.
using PlotTarget = std::function<double(double)>;

/// An SVG picture of the response from 20 Hz to 20 kHz: each band alone, and all with the volume; with a target all
/// bands, the target, and the difference. The response is measured through effects in series with these values; the
/// picture is a file of its own, and its lines can be told apart without colours.
[[nodiscard]] std::string drawResponse(const EffectLibrary& library, const std::vector<NormalisedValues>& values,
                                       const FrequencyMap& frequencies, const PlotTarget& target = {});

} // namespace eq
