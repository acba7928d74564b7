#pragma once

#include <atomic>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <limits>
#include <string>

/// What was done, by kind.
struct Counts {
    std::atomic<std::uint64_t> blocks, samples, editors, loads, brokenFiles;
};
inline Counts counts{};

inline std::uint64_t seedOfRun = 0;
/// Where the calling thread is.
inline thread_local std::uint64_t ownTrack = 0;
inline thread_local std::uint64_t ownStep = 0;

/// Tells what was wrong, and where, and ends the program.
[[noreturn]] inline void violation(const std::string& what, int status = 1) {
    std::cout << "VIOLATION: seed " << seedOfRun << ", track " << ownTrack << ", step " << ownStep << ": " << what
              << std::endl;
    std::_Exit(status);
}

inline void require(bool holds, const char* what) {
    if (!holds) violation(what);
}

/// The decisions of one step of one thread. They follow from the seed alone, and not from what other threads do.
class Choices {
public:
    Choices(std::uint64_t track, std::uint64_t step) : state(seedOfRun) {
        ownTrack = track;
        ownStep = step;
        state = next() + track;
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
        constexpr std::int32_t Ends[] = {INT32_MIN, INT32_MIN + 1, -1, 0, 1, INT32_MAX - 1, INT32_MAX};
        return oneIn(3) ? of(Ends) : static_cast<std::int32_t>(next()) >> below(32);
    }

    /// Any bits.
    float number() {
        constexpr float Odd[] = {0.0f, -0.0f, NAN, INFINITY, -INFINITY, FLT_TRUE_MIN, -FLT_TRUE_MIN, FLT_MAX, -FLT_MAX};
        return oneIn(2) ? of(Odd) : std::bit_cast<float>(static_cast<std::uint32_t>(next()));
    }

private:
    std::uint64_t state;
};
