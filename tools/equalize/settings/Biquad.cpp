#include "tools/equalize/settings/Biquad.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace eq {
namespace {

/// Returns A in the notation of the source: the square root of the gain as a factor.
double rootGain(double decibels) {
    return std::pow(10.0, decibels / 40.0);
}

} // namespace

Biquad Biquad::peak(double angle, double gain, double alpha) {
    const double root = rootGain(gain);
    const double middle = -2.0 * std::cos(angle);
    Biquad result;
    result.m_b[0] = 1.0 + alpha * root;
    result.m_b[1] = middle;
    result.m_b[2] = 1.0 - alpha * root;
    result.m_a[0] = 1.0 + alpha / root;
    result.m_a[1] = middle;
    result.m_a[2] = 1.0 - alpha / root;
    return result;
}

Biquad Biquad::lowShelf(double angle, double gain, double alpha) {
    const double root = rootGain(gain);
    const double cosine = std::cos(angle);
    const double side = 2.0 * std::sqrt(root) * alpha;
    Biquad result;
    result.m_b[0] = root * (root + 1.0 - (root - 1.0) * cosine + side);
    result.m_b[1] = 2.0 * root * (root - 1.0 - (root + 1.0) * cosine);
    result.m_b[2] = root * (root + 1.0 - (root - 1.0) * cosine - side);
    result.m_a[0] = root + 1.0 + (root - 1.0) * cosine + side;
    result.m_a[1] = -2.0 * (root - 1.0 + (root + 1.0) * cosine);
    result.m_a[2] = root + 1.0 + (root - 1.0) * cosine - side;
    return result;
}

/// Mirrors a low shelf: replaces z by -z.
Biquad Biquad::highShelf(double angle, double gain, double alpha) {
    Biquad result = lowShelf(std::numbers::pi - angle, gain, alpha);
    result.m_b[1] = -result.m_b[1];
    result.m_a[1] = -result.m_a[1];
    return result;
}

double Biquad::alphaOfQ(double angle, double q) {
    return std::sin(angle) / (2.0 * q);
}

double Biquad::alphaOfOctaves(double angle, double octaves) {
    return std::sin(angle) * std::sinh(std::numbers::ln2 / 2.0 * octaves * angle / std::sin(angle));
}

double Biquad::alphaOfSlope(double angle, double gain, double slope) {
    const double root = rootGain(gain);
    return std::sin(angle) / 2.0 * std::sqrt((root + 1.0 / root) * (1.0 / slope - 1.0) + 2.0);
}

double Biquad::decibelsAt(double angle) const {
    const std::complex<double> delay = std::polar(1.0, -angle);
    const std::complex<double> numerator = m_b[0] + delay * (m_b[1] + delay * m_b[2]);
    const std::complex<double> denominator = m_a[0] + delay * (m_a[1] + delay * m_a[2]);
    return 10.0 * std::log10(std::norm(numerator) / std::norm(denominator));
}

} // namespace eq
