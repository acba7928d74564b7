#pragma once

namespace eq {

/// A second-order filter section, as other equalizers use it. The formulas are from R. Bristow-Johnson, "Cookbook
/// formulae for audio equalizer biquad filter coefficients", 1994. The effect's bells have the same shape, but another
/// formula for the width.
class Biquad {
public:
    /// `angle` is 2 pi times the frequency divided by the rate, below pi. `gain` is in dB. `alpha` is the width in
    /// the notation of the source. The functions below return it.
    [[nodiscard]] static Biquad peak(double angle, double gain, double alpha);
    [[nodiscard]] static Biquad lowShelf(double angle, double gain, double alpha);
    [[nodiscard]] static Biquad highShelf(double angle, double gain, double alpha);

    [[nodiscard]] static double alphaOfQ(double angle, double q);
    [[nodiscard]] static double alphaOfOctaves(double angle, double octaves);
    /// A slope of 1 is the steepest slope of a shelf without overshoot. Returns NaN for a slope that is too steep.
    [[nodiscard]] static double alphaOfSlope(double angle, double gain, double slope);

    /// Returns the gain in dB at an angle above 0 and below pi.
    [[nodiscard]] double decibelsAt(double angle) const;

private:
    double m_b[3] = {};
    double m_a[3] = {};
};

} // namespace eq
