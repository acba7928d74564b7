#pragma once

#include "tools/equalize/settings/Bell.h"
#include "tools/equalize/settings/TargetResponse.h"

#include <vector>

namespace eq {

/// Bells whose response comes near to another one.
struct BellFit {
    std::vector<Bell> bells;
    double offset = 0.0;             ///< dB, to be added to the volume
    double deviation = 0.0;          ///< the largest, in dB
    double deviationFrequency = 0.0; ///< where it is, in Hz
};

/// Where a fit counts: 20 Hz to 20 kHz, or up to where bells can be at this rate.
[[nodiscard]] ValueRange fitRange(int sampleRate);

/// Fits up to `mostBells` bells by least squares in decibels, with equal weight for each octave. The result is the same
/// in each run. `offsets` are the offsets that the volume can take; {0, 0} for a target whose level is fixed.
[[nodiscard]] BellFit fitBells(const TargetResponse& target, int sampleRate, int mostBells, ValueRange offsets);

} // namespace eq
