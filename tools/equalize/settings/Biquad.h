#pragma once

namespace eq {

/// A second-order section: R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients",
/// 1994. Other equalizers use these formulas. The effect's bells have the same shape, and their width in another form.
class Biquad {
public:
    /// `angle` is 2 pi times the frequency divided by the rate, below pi. `gain` is in dB. `alpha` is the width of the
    /// literature, which the functions below return.
    [[nodiscard]] static Biquad peak(double angle, double gain, double alpha);
    [[nodiscard]] static Biquad lowShelf(double angle, double gain, double alpha);
    [[nodiscard]] static Biquad highShelf(double angle, double gain, double alpha);

    [[nodiscard]] static double alphaOfQ(double angle, double q);
    [[nodiscard]] static double alphaOfOctaves(double angle, double octaves);
    /// `slope` is 1 for the steepest shelf without an overshoot. Not a number for a slope that is too steep.
    [[nodiscard]] static double alphaOfSlope(double angle, double gain, double slope);

    /// The gain in dB at an angle above 0 and below pi.
    [[nodiscard]] double decibelsAt(double angle) const;

private:
    double m_b[3] = {};
    double m_a[3] = {};
};

} // namespace eq
