#pragma once

#include "tools/equalize/settings/Bell.h"
#include "tools/equalize/settings/TargetResponse.h"

#include <vector>

namespace eq {

/// Bells whose response approximates a target.
struct BellFit {
    std::vector<Bell> bells;
    double offset = 0.0;             ///< dB, to be added to the volume
    double deviation = 0.0;          ///< the largest deviation from the target, in dB
    double deviationFrequency = 0.0; ///< the frequency of the largest deviation, in Hz
};

/// Returns the range in Hz in which a fit compares the responses. The range is 20 Hz to 20 kHz, or ends at the highest
/// frequency of a bell at this rate.
[[nodiscard]] ValueRange fitRange(int sampleRate);

/// Fits up to `mostBells` bells to a target by least squares in decibels, with equal weight for each octave. The result
/// is the same in each run. `offsets` is the range in dB from which the fit chooses the offset of the volume; {0, 0}
/// for a target whose level is fixed.
[[nodiscard]] BellFit fitBells(const TargetResponse& target, int sampleRate, int mostBells, ValueRange offsets);

} // namespace eq
