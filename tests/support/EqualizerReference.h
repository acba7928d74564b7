#pragma once

// Computes the audio that the effect must return, with engines that the tests call directly.

#include "tests/support/EngineInput.h"

#include <array>
#include <cmath>
#include <random>
#include <utility>

namespace eq {

using Stereo = std::array<Samples, 2>;
/// The normalised parameters of a new effect.
inline constexpr Values DefaultParameters = {0.5f, 1.0f, 2.0f / 3.0f, 1.0f / 3.0f, 0.0f,        0.5f,       0.5f,
                                             0.5f, 0.5f, 5.0f / 9.0f, 5.0f / 9.0f, 5.0f / 9.0f, 5.0f / 9.0f};

/// Normalised parameters with which every band is audible and the volume is not 0 dB.
inline constexpr Values Audible = {0.25f, 0.7f, 0.5f, 0.3f, 0.1f, 0.0f, 1.0f, 0.2f, 0.9f, 0.5f, 0.1f, 0.9f, 0.4f};

/// Converts normalised parameters to engineering units.
inline Values engineValues(const Values& p) {
    Values values;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const double x = p[i];
        const double value = i == 0  ? (x - 0.5) * -24.0
                             : i < 5 ? 20.0 * std::pow(10.0, (1.0 - x) * 3.0)
                             : i < 9 ? (x - 0.5) * -20.0
                                     : 10.0 - x * 9.0;
        values[i] = static_cast<float>(value);
    }
    return values;
}

inline Stereo noise(std::size_t frames, unsigned seed = 1) {
    std::mt19937 random(seed);
    Samples first = noise(random, frames);
    return {std::move(first), noise(random, frames)};
}

/// Two engines, one per channel, with the same parameters.
class ReferencePair {
public:
    explicit ReferencePair(const Values& engineeringValues) { set(engineeringValues); }

    void set(const Values& engineeringValues) {
        for (auto& engine : engines) engine.setParameters(engineeringValues.data());
    }

    Stereo render(Stereo audio) {
        for (std::size_t i = 0; i < audio.size(); ++i)
            engines[i].process(audio[i].data(), audio[i].data(), static_cast<int>(audio[i].size()), 0);
        return audio;
    }

private:
    std::array<FourBandEqualizer, 2> engines;
};

inline bool sameBits(const Stereo& a, const Stereo& b) {
    return firstDifference(a[0], b[0]) == -1 && firstDifference(a[1], b[1]) == -1;
}

} // namespace eq
