#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

/// The decisions of one step of one thread. They follow from the seed alone, and not from what other threads do.
class Choices {
public:
    Choices(std::uint64_t seed, std::uint64_t role, std::uint64_t step) : state(seed) {
        state = next() + role;
        state = next() + step;
    }

    /// Sebastiano Vigna's SplitMix64 (2015).
    std::uint64_t next() {
        std::uint64_t z = (state += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }

    /// 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }
    std::int32_t between(std::int32_t first, std::int32_t last) {
        return first + static_cast<std::int32_t>(below(static_cast<std::size_t>(last - first) + 1));
    }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <typename Range>
    auto& of(Range& range) {
        return std::begin(range)[below(std::size(range))];
    }

    /// -1 to 1.
    float sample() { return static_cast<float>(static_cast<std::int32_t>(next() >> 32)) * 0x1p-31f; }

    /// Of any size and sign, now and then at the ends of the type.
    std::int32_t integer() {
        using Limits = std::numeric_limits<std::int32_t>;
        constexpr std::int32_t Ends[] = {Limits::min(), Limits::min() + 1, -1, 0, 1, Limits::max() - 1, Limits::max()};
        return oneIn(3) ? of(Ends) : static_cast<std::int32_t>(next()) >> below(32);
    }

    /// Any bits.
    float number() {
        using Limits = std::numeric_limits<float>;
        constexpr float Odd[] = {0.0f,
                                 -0.0f,
                                 Limits::quiet_NaN(),
                                 Limits::infinity(),
                                 -Limits::infinity(),
                                 Limits::denorm_min(),
                                 -Limits::denorm_min(),
                                 Limits::max(),
                                 Limits::lowest()};
        return oneIn(2) ? of(Odd) : std::bit_cast<float>(static_cast<std::uint32_t>(next()));
    }

private:
    std::uint64_t state;
};
