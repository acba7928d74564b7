#include "tools/equalize/settings/ExactBells.h"

#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/settings/Biquad.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace eq {
namespace {

/// The relative tolerance at the ends of a range. A calculation may round an end to a value just outside.
constexpr double Slack = 1e-9;

bool isIn(ValueRange range, double value) {
    const double lowest = range.lowest - std::fabs(range.lowest) * Slack;
    const double highest = range.highest + std::fabs(range.highest) * Slack;
    return value >= lowest && value <= highest;
}

/// Returns a range as text. Both ends are rounded into the range.
std::string textOf(ValueRange range, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const auto slack = [scale](double end) { return std::fabs(end) * scale * Slack; };
    return fixed(std::ceil(range.lowest * scale - slack(range.lowest)) / scale, decimals) + " to " +
           fixed(std::floor(range.highest * scale + slack(range.highest)) / scale, decimals);
}

double qOf(const TextFilter& filter, double angle) {
    if (filter.widthKind == TextFilter::Width::Q) return filter.width;
    return std::sin(angle) / (2.0 * Biquad::alphaOfOctaves(angle, filter.width));
}

Bell bellOf(const TextFilter& filter, int sampleRate) {
    if (filter.shape != TextFilter::Shape::Peak) throw FileError("a shelf cannot be replaced by a peak filter");
    if (!isIn(GainRange, filter.gain)) throw FileError("the gain must be " + textOf(GainRange, 0) + " dB");
    const ValueRange frequencies = bellFrequencyRange(sampleRate);
    if (!isIn(frequencies, filter.frequency))
        throw FileError("the frequency must be " + textOf(frequencies, 2) + " Hz at a rate of " +
                        std::to_string(sampleRate) + " Hz");
    const double angle = angleOf(filter.frequency, sampleRate);
    const double wanted = qOf(filter, angle);
    const ValueRange reach = {biquadQ(angle, filter.gain, QRange.lowest), biquadQ(angle, filter.gain, QRange.highest)};
    if (!isIn(reach, wanted))
        throw FileError(
            (filter.widthKind == TextFilter::Width::Q ? "Q" : "the bandwidth as Q, " + fixed(wanted, 3) + ",") +
            " must be " + textOf(reach, 3) + " at this frequency and gain");
    return {filter.frequency, filter.gain,
            std::clamp(bellQ(angle, filter.gain, wanted), QRange.lowest, QRange.highest)};
}

/// Returns the start of a message: "line 3, LSC Fc 105 Hz Gain 5.5 dB: ".
std::string headOf(const TextFilter& filter) {
    return "line " + std::to_string(filter.line) + ", " + filter.type + " Fc " + shortest(filter.frequency) +
           " Hz Gain " + shortest(filter.gain) + " dB" +
           (filter.widthKind == TextFilter::Width::Q ? " Q " + shortest(filter.width) : "") + ": ";
}

} // namespace

std::vector<Bell> exactBells(const FilterText& text, int sampleRate) {
    std::vector<Bell> bells;
    std::vector<std::string> faults;
    if (!text.curve.empty())
        faults.push_back("line " + std::to_string(text.curveLine) +
                         ", GraphicEQ: a curve cannot be replaced by peak filters");
    for (const TextFilter& filter : text.filters) {
        try {
            if (filter.gain != 0.0) bells.push_back(bellOf(filter, sampleRate));
        } catch (const FileError& error) {
            faults.push_back(headOf(filter) + error.what());
        }
    }
    if (faults.empty()) return bells;
    const std::string count = faults.size() == 1 ? "a line has" : std::to_string(faults.size()) + " lines have";
    throw FileError(text.name + ": " + count + " no exact form in this effect; --fit approximates the whole file",
                    std::move(faults));
}

} // namespace eq
