#pragma once

#include "engine/ParameterArray.h"

#include <cmath>

namespace eq {

/// The horizontal axis: FrequencyRange on a logarithmic scale, from `left` over `width` pixels.
struct FrequencyAxis {
    double left = 0.0;
    double width = 1.0;

    static double octaves() noexcept { return std::log2(FrequencyRange.highest / FrequencyRange.lowest); }
    [[nodiscard]] double xOf(double hertz) const noexcept {
        return left + width * std::log2(hertz / FrequencyRange.lowest) / octaves();
    }
    [[nodiscard]] double hertzAt(double x) const noexcept {
        return FrequencyRange.lowest * std::exp2((x - left) / width * octaves());
    }
};

/// The vertical axis: `range` dB is at `top`, and -`range` dB is `height` pixels below.
struct DecibelAxis {
    double top = 0.0;
    double height = 1.0;
    double range = 12.0;

    [[nodiscard]] double yOf(double decibels) const noexcept { return top + height * (0.5 - decibels / (2.0 * range)); }
    [[nodiscard]] double decibelsAt(double y) const noexcept { return (0.5 - (y - top) / height) * 2.0 * range; }
};

/// Returns the range of the vertical axis, in dB, for a curve whose largest distance from 0 dB is `largest`: the next
/// multiple of 6 above `largest`, but at least 12.
inline double decibelRangeFor(double largest) noexcept {
    constexpr double Smallest = 12.0;
    constexpr double Step = 6.0;
    return largest < Smallest ? Smallest : Step * (std::floor(largest / Step) + 1.0);
}

} // namespace eq
