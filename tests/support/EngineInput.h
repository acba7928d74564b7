#pragma once

// Samples and settings for engines, and a comparison of samples.

#include "engine/FourBandEqualizer.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace eq {

using Samples = std::vector<float>;
/// The 13 parameters: normalised, or in engineering units.
using Values = std::array<float, ParameterCount>;

constexpr int BlockSize = FourBandEqualizer::BlockSize;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinity = std::numeric_limits<float>::infinity();

inline Samples noise(std::mt19937& random, std::size_t count, float level = 1) {
    Samples samples(count);
    std::uniform_real_distribution<float> pick(-level, level);
    for (float& sample : samples) sample = pick(random);
    return samples;
}

/// Returns random parameters in engineering units, some of them slightly outside their limits. About a tenth of the
/// values is NaN, and a tenth of the gains is 0 dB.
inline Values randomValues(std::mt19937& random) {
    const auto pick = [&](float low, float high) {
        return random() % 10 == 0 ? NaN : std::uniform_real_distribution<float>(low, high)(random);
    };
    Values values{};
    values[0] = pick(-13, 13);
    for (std::size_t i = 1; i <= BandCount; ++i) {
        values[i] = 15.0F * std::pow(1500.0F, pick(0, 1));
        values[BandCount + i] = random() % 10 == 0 ? 0 : pick(-11, 11);
        values[2 * BandCount + i] = pick(0.5F, 11);
    }
    return values;
}

/// Returns a crossfade over one block.
inline Samples blended(const Samples& from, const Samples& to) {
    Samples result(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        const double weight = static_cast<double>(2 * i + 1) / 4096;
        result[i] = static_cast<float>((1 - weight) * from[i] + weight * to[i]);
    }
    return result;
}

/// Returns the index of the first sample whose bits differ, or -1. Two NaNs with any signs and payloads count as equal.
inline long firstDifference(const Samples& a, const Samples& b) {
    if (a.size() != b.size()) return 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool same = std::bit_cast<std::uint32_t>(a[i]) == std::bit_cast<std::uint32_t>(b[i]);
        if (!same && !(std::isnan(a[i]) && std::isnan(b[i]))) return static_cast<long>(i);
    }
    return -1;
}

} // namespace eq
