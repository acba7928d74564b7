#include "tools/equalize/sound/SampleMagnitudes.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace eq {

// Without the sign bit, floats have the same order as the integers with the same bits, and NaN comes after infinity.
// The compiler can vectorize this loop over integers. It must not reorder the operations of a loop over floats.
SampleMagnitudes magnitudesOf(const float* samples, std::size_t count) noexcept {
    constexpr std::int32_t WithoutSign = 0x7fffffff;
    constexpr auto FullScale = std::bit_cast<std::int32_t>(1.0F);
    std::int32_t largest = 0;
    std::uint32_t beyond = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t magnitude = std::bit_cast<std::int32_t>(samples[i]) & WithoutSign;
        largest = std::max(largest, magnitude);
        beyond += magnitude > FullScale ? 1 : 0;
    }
    return {std::bit_cast<float>(largest), beyond};
}

} // namespace eq
