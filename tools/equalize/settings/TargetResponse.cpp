#include "tools/equalize/settings/TargetResponse.h"

#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/settings/Bell.h"

#include <algorithm>
#include <cmath>

namespace eq {
namespace {

/// Returns the frequency in the middle of a filter. In the middle of a shelf, the gain is half of the whole gain in dB.
/// If the text names the start of a shelf, the slope determines the distance from the start to the middle.
double middleOf(const TextFilter& filter) {
    if (!filter.isAtCorner) return filter.frequency;
    double slope = filter.width;
    if (filter.widthKind == TextFilter::Width::Q) {
        const double root = std::pow(10.0, filter.gain / 40.0);
        slope = 1.0 / ((1.0 / (filter.width * filter.width) - 2.0) / (root + 1.0 / root) + 1.0);
    }
    const double distance = std::pow(10.0, std::fabs(filter.gain) / 80.0 / slope);
    return filter.shape == TextFilter::Shape::LowShelf ? filter.frequency * distance : filter.frequency / distance;
}

double alphaOf(const TextFilter& filter, double angle) {
    switch (filter.widthKind) {
    case TextFilter::Width::Q:
        return Biquad::alphaOfQ(angle, filter.width);
    case TextFilter::Width::Octaves:
        return Biquad::alphaOfOctaves(angle, filter.width);
    default:
        return Biquad::alphaOfSlope(angle, filter.gain, filter.width);
    }
}

Biquad sectionOf(const TextFilter& filter, double angle) {
    const double alpha = alphaOf(filter, angle);
    switch (filter.shape) {
    case TextFilter::Shape::LowShelf:
        return Biquad::lowShelf(angle, filter.gain, alpha);
    case TextFilter::Shape::HighShelf:
        return Biquad::highShelf(angle, filter.gain, alpha);
    default:
        return Biquad::peak(angle, filter.gain, alpha);
    }
}

} // namespace

TargetResponse::TargetResponse(const FilterText& text, int sampleRate) : m_sampleRate(sampleRate), m_curve(text.curve) {
    for (const TextFilter& filter : text.filters) {
        const double middle = middleOf(filter);
        // A shelf with a very small slope may have its middle far outside the range of sound.
        constexpr double LowestMiddle = 1e-6;
        if (middle < LowestMiddle || middle * 2.0 >= sampleRate)
            throw FileError(text.origin(filter.line) + filter.type + " at " + shortest(filter.frequency) +
                            " Hz is not possible: its middle is not between 0 and " + shortest(sampleRate / 2.0) +
                            " Hz, half of the rate; remove the line");
        m_sections.push_back(sectionOf(filter, angleOf(middle, sampleRate)));
    }
}

double TargetResponse::decibelsAt(double frequency) const {
    double sum = curveAt(frequency);
    for (const Biquad& section : m_sections) sum += section.decibelsAt(angleOf(frequency, m_sampleRate));
    return sum;
}

/// Returns the curve in dB. Between two points, the curve is a straight line over the logarithm of the frequency.
/// Beyond its ends, the curve is constant.
double TargetResponse::curveAt(double frequency) const {
    if (m_curve.empty()) return 0.0;
    const auto right = std::ranges::upper_bound(m_curve, frequency, {}, &CurvePoint::frequency);
    if (right == m_curve.begin()) return m_curve.front().gain;
    if (right == m_curve.end()) return m_curve.back().gain;
    const CurvePoint& left = *std::prev(right);
    const double part = std::log(frequency / left.frequency) / std::log(right->frequency / left.frequency);
    return left.gain + part * (right->gain - left.gain);
}

} // namespace eq
