#pragma once

#include <cstddef>

namespace eq {

/// The size of samples, without their signs.
struct SampleMagnitudes {
    float largest = 0.0F;            ///< infinity or NaN if one of the samples is
    std::size_t beyondFullScale = 0; ///< the number of samples above 1, infinity and NaN included
};

[[nodiscard]] SampleMagnitudes magnitudesOf(const float* samples, std::size_t count) noexcept;

} // namespace eq
