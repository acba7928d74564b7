#pragma once

#include "parameters/ParameterTable.h"

namespace eq {

/// A peak filter of the effect. The frequency is in Hz as heard, the gain in dB, and q the effect's own.
struct Bell {
    double frequency;
    double gain;
    double q;
};

/// Returns the frequencies that a bell can have at a rate. The effect designs for 44100 Hz, and other rates stretch it.
[[nodiscard]] ValueRange bellFrequencyRange(int sampleRate);

/// The effect's width of a bell is t = tan(w / 2q), and the width of a biquad is t = sin(w) / 2Q, times 10^(-|g|/40)
/// for a gain of g dB: with these two, both have the same transfer function.
///
///     q = (w/2) / atan(sin(w) / 2Q * 10^(-|g|/40))
///
/// `angle` is w, 2 pi times the frequency divided by the rate.
[[nodiscard]] double bellQ(double angle, double gain, double biquadQ);

/// The inverse of `bellQ`: returns the Q of the biquad.
[[nodiscard]] double biquadQ(double angle, double gain, double bellQ);

/// Returns 2 pi times the frequency divided by the rate.
[[nodiscard]] double angleOf(double frequency, int sampleRate);

/// Returns the gain of a bell in dB at a frequency.
[[nodiscard]] double decibelsOf(const Bell& bell, double frequency, int sampleRate);

} // namespace eq
