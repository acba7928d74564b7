#pragma once

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <random>
#include <span>

// The random decisions of a thread. They depend only on the thread's seed or input, not on other threads.

namespace eq {

/// The source of the decisions: a random generator, or the bytes of a fuzzer's input.
class Choices {
public:
    void seed(std::uint32_t number) { engine.seed(number); }
    void read(std::span<const std::uint8_t> bytes) { input = bytes; }
    [[nodiscard]] bool hasInput() const { return !input.empty(); }

    std::uint32_t operator()() {
        if (!hasInput()) return static_cast<std::uint32_t>(engine());
        std::uint32_t value = 0;
        for (std::size_t i = std::min<std::size_t>(input.size(), 4); i > 0; --i, input = input.subspan(1))
            value = value << 8U | input[0];
        return value;
    }

private:
    std::mt19937 engine;
    std::span<const std::uint8_t> input;
};

inline Choices& choices() {
    static thread_local Choices source;
    return source;
}

/// Returns a number from 0 to `count` - 1.
inline std::size_t below(std::size_t count) {
    return choices()() % count;
}

inline bool oneIn(std::size_t count) {
    return below(count) == 0;
}

inline std::int32_t between(std::int32_t first, std::int32_t last) {
    return first + static_cast<std::int32_t>(below(static_cast<std::size_t>(last - first) + 1));
}

template <typename Range>
const auto& oneOf(const Range& range) {
    return std::begin(range)[below(std::size(range))];
}

/// Returns a sample from -1 to 1.
inline float sample() {
    return static_cast<float>(static_cast<std::int32_t>(choices()())) * 0x1p-31f;
}

/// Returns a number of any size and sign, sometimes at the ends of the type or near 0.
inline std::int32_t integer() {
    constexpr std::int32_t Ends[] = {INT32_MIN, INT32_MIN + 1, -1, 0, 1, INT32_MAX - 1, INT32_MAX};
    return oneIn(3) ? oneOf(Ends) : static_cast<std::int32_t>(choices()()) >> below(32);
}

/// Returns a float with any bits, sometimes a special value.
inline float number() {
    constexpr float Odd[] = {0.0f, -0.0f, NAN, INFINITY, -INFINITY, FLT_TRUE_MIN, -FLT_TRUE_MIN, FLT_MAX, -FLT_MAX};
    return oneIn(2) ? oneOf(Odd) : std::bit_cast<float>(static_cast<std::uint32_t>(choices()()));
}

} // namespace eq
