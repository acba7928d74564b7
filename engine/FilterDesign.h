#pragma once

/// Peak sections in series.
inline constexpr int BandCount = 4;
/// Values in a parameter array: the volume, then frequency, gain and Q of each band.
inline constexpr int ParameterCount = 1 + 3 * BandCount;

/// The coefficients of one setting of the equalizer: an output gain and four second-order peak filters, each made of
/// an allpass A:
///
///     A(z) = (-k + c(1 - k)z^-1 + z^-2) / (1 + c(1 - k)z^-1 - k z^-2)
///     H(z) = 1 + ((G - 1)/2)(1 - A(z))
///
/// (P. A. Regalia and S. K. Mitra, "Tunable digital frequency response equalization filters", 1987, in the form of
/// U. Zölzer, "Digital Audio Signal Processing".) The response is G at the centre, and 1 at 0 Hz and half the rate.
///
/// Every setting gives c and k strictly between -1 and 1: each section is stable.
struct FilterDesign {
    double outputGain;                      ///< linear
    double bandwidthCoefficient[BandCount]; ///< k
    double centreCoefficient[BandCount];    ///< c
    double bandGain[BandCount];             ///< G, linear

    /// All gains at 1, which passes every sample unchanged.
    [[nodiscard]] static FilterDesign flat() noexcept;

    /// Designs for 13 values in engineering units, for a rate of 44100 Hz:
    ///
    ///     0       output volume, dB                       limited to -12 .. +12
    ///     1..4    centre frequency of bands 1 to 4, Hz    limited to 20 .. 20000
    ///     5..8    gain of bands 1 to 4, dB                limited to -10 .. +10
    ///     9..12   Q (centre divided by bandwidth)         limited to 1 .. 10
    ///
    /// The limits are applied silently; a NaN counts as the lower limit.
    [[nodiscard]] static FilterDesign of(const float (&values)[ParameterCount]) noexcept;
};
