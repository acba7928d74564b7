#pragma once

#include "tests/stress/Report.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

/// An array in the middle of others whose contents must stay.
template <typename Element, Element Canary>
class GuardedArray {
public:
    static constexpr std::size_t Margin = 64;

    /// `skew` elements further on than the allocation's alignment.
    explicit GuardedArray(std::size_t size, std::size_t skew = 0)
        : before(Margin + skew), length(size), storage(before + size + Margin, Canary) {}

    Element* data() { return storage.data() + before; }
    [[nodiscard]] std::size_t size() const { return length; }

    void check() const {
        const auto isCanary = [](const Element& element) { return element == Canary; };
        const auto middle = storage.begin() + static_cast<std::ptrdiff_t>(before);
        require(std::all_of(storage.begin(), middle, isCanary), "something was written in front of a buffer");
        require(std::all_of(middle + static_cast<std::ptrdiff_t>(length), storage.end(), isCanary),
                "something was written behind a buffer");
    }
    void checkUntouched() const {
        require(std::all_of(storage.begin(), storage.end(), [](const Element& e) { return e == Canary; }),
                "a buffer was touched that had to stay as it was");
    }

private:
    std::size_t before;
    std::size_t length;
    std::vector<Element> storage;
};

using GuardedSamples = GuardedArray<float, -8.7654321e17f>;
using GuardedText = GuardedArray<char, '#'>;
