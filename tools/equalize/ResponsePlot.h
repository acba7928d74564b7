#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/ParameterText.h"

#include <functional>
#include <string>
#include <vector>

namespace eq {

/// A function that returns decibels at a frequency in Hz.
using PlotTarget = std::function<double(double)>;

/// Returns an SVG picture of the response from 20 Hz to 20 kHz. The picture shows each band, and the sum of all bands
/// with the volume. With a target, it shows the sum, the target and their difference instead. The response is measured
/// through effects in series with these values. The picture refers to no other file, and its lines have different
/// dashes, so that it needs no colours. Throws FileError.
[[nodiscard]] std::string drawResponse(const EffectLibrary& library, const std::vector<NormalisedValues>& values,
                                       const FrequencyMap& frequencies, const PlotTarget& target = {});

} // namespace eq
