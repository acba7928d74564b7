#pragma once

#include <random>

namespace eq {

/// Generates noise that is added to samples before they are rounded to integers. Each value is the difference of two
/// uniform random numbers. The mean and the power of the rounding error then do not depend on the sound (S. P.
/// Lipshitz, R. A. Wannamaker and J. Vanderkooy, Quantization and Dither: A Theoretical Survey, 1992). The noise is the
/// same for every file.
class Dither {
public:
    /// Returns a number between -1 and 1, in steps of the integer format.
    double next() {
        const double first = uniform();
        return first - uniform();
    }

private:
    double uniform() { return static_cast<double>(m_generator()) * 0x1p-32; }

    // The C++ standard defines the sequence of this generator and its default seed.
    std::mt19937 m_generator;
};

} // namespace eq
