#pragma once

#include "engine/ParameterArray.h"

namespace eq {

/// The coefficients of one setting of the equalizer: an output gain and four second-order peak filters, each made of
/// an allpass A:
///
///     A(z) = (-k + c(1 - k)z^-1 + z^-2) / (1 + c(1 - k)z^-1 - k z^-2)
///     H(z) = 1 + ((G - 1)/2)(1 - A(z))
///
/// (P. A. Regalia and S. K. Mitra, "Tunable digital frequency response equalization filters", 1987, in the form of
/// U. Zölzer, "Digital Audio Signal Processing".) The response is G at the centre, and 1 at 0 Hz and half the rate.
///
/// For every setting, c and k are strictly between -1 and 1, so that each section is stable.
struct FilterDesign {
    /// The sampling rate of a design if the caller specifies no rate, in Hz.
    static constexpr double DefaultRate = 44100.0;

    double outputGain;                      ///< linear
    double bandwidthCoefficient[BandCount]; ///< k
    double centreCoefficient[BandCount];    ///< c
    double bandGain[BandCount];             ///< G, linear

    /// Returns a design with all gains at 1, which passes every sample unchanged. Its coefficients are the same at
    /// every rate.
    [[nodiscard]] static FilterDesign flat() noexcept;

    /// Returns the design for 13 values, which have the order and the units of ParameterArray.h. `rate` is the sampling
    /// rate of the sound, above 0 Hz. Values outside their ranges are limited; a NaN counts as the lowest value. At low
    /// rates a centre is limited to 0.907 of half the rate, which is 20000 Hz at the default rate.
    [[nodiscard]] static FilterDesign of(const float (&values)[ParameterCount], double rate = DefaultRate) noexcept;
};

} // namespace eq
