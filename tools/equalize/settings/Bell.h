#pragma once

#include "parameters/ParameterTable.h"

namespace eq {

/// A peak filter of the effect. The frequency is in Hz as heard, and the gain is in dB. The effect's q differs from the
/// Q of a biquad.
struct Bell {
    double frequency;
    double gain;
    double q;
};

/// Returns the range of frequencies in Hz that a bell can have at a rate. The range is proportional to the rate,
/// because the effect designs its filters for 44100 Hz.
[[nodiscard]] ValueRange bellFrequencyRange(int sampleRate);

/// Returns the q of the bell with the same transfer function as a biquad with the Q `biquadQ`:
///
///     q = (w/2) / atan(sin(w) / 2Q * 10^(-|g|/40))
///
/// The effect uses the width tan(w / 2q), and the biquad has the width sin(w) / 2Q * 10^(-|g|/40). The formula makes
/// both widths equal. `angle` is w, 2 pi times the frequency divided by the rate. `gain` is g, in dB.
[[nodiscard]] double bellQ(double angle, double gain, double biquadQ);

/// Returns the Q of the biquad for the q of a bell: the inverse of `bellQ`.
[[nodiscard]] double biquadQ(double angle, double gain, double bellQ);

/// Returns the angle of a frequency: 2 pi times the frequency divided by the rate.
[[nodiscard]] double angleOf(double frequency, int sampleRate);

/// Returns the gain of a bell in dB at a frequency in Hz.
[[nodiscard]] double decibelsOf(const Bell& bell, double frequency, int sampleRate);

} // namespace eq
