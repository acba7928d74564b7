#pragma once

#include <random>

namespace eq {

/// Noise for samples that are rounded to integers: the difference of two uniform random numbers, so that the error of
/// rounding does not depend on the sound. The same for every file.
class Dither {
public:
    /// Returns a number between -1 and 1, in steps of the integer format.
    double next() {
        const double first = uniform();
        return first - uniform();
    }

private:
    double uniform() { return static_cast<double>(m_generator()) * 0x1p-32; }

    // The standard fixes the numbers of this generator and its seed.
    std::mt19937 m_generator;
};

} // namespace eq
