#pragma once

#include <cstddef>

namespace eq {

/// The magnitudes of samples: their values without the signs.
struct SampleMagnitudes {
    float largest = 0.0F;            ///< infinity or NaN if a sample is infinite or NaN
    std::size_t beyondFullScale = 0; ///< the number of samples above 1, with infinity and NaN
};

/// Returns the magnitudes of `count` samples.
[[nodiscard]] SampleMagnitudes magnitudesOf(const float* samples, std::size_t count) noexcept;

} // namespace eq
