#pragma once

// Sound and settings for engines.

#include "engine/FourBandEqualizer.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

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

/// Engineering units, a little beyond the limits on both sides. A tenth of the values is a NaN, or a band at 0 dB.
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
