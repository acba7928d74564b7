#include "tools/equalize/PeakGain.h"

#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/OutputFormat.h"
#include "tools/equalize/UnitText.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace eq {
namespace {

/// Returns the highest sample that `format` holds, less the highest noise of the dither, which is one step.
double ceilingOf(int format, bool isDithered) {
    const int bits = integerBits(format);
    if (bits == 0) return 1.0;
    // Floats below 1 are 24 bits long.
    constexpr int FloatBits = 24;
    return 1.0 - (isDithered ? 2.0 : 1.0) * std::ldexp(1.0, 1 - std::min(bits, FloatBits));
}

} // namespace

void PeakGain::setLevel(std::string_view decibels) {
    constexpr double Lowest = -100.0;
    m_level = parseWithUnit(ParameterKind::Volume, decibels);
    if (!m_level || *m_level < Lowest || *m_level > 0.0)
        throw UsageError("--normalize: " + quoted(trimmed(decibels)) + " is not a number from -100 to 0 dB");
}

void PeakGain::addToPeak(float& peak, const float* samples, sf_count_t count) {
    for (sf_count_t index = 0; index < count; ++index) {
        const float level = std::fabs(samples[index]);
        if (level > peak) peak = level;
    }
}

double PeakGain::gainFor(float peak, int format, bool isDithered) const {
    if (std::isinf(peak)) throw FileError("the sound has infinite samples, which no gain brings to a level");
    const double ceiling = ceilingOf(format, isDithered);
    const auto highest = static_cast<double>(peak);
    if (highest == 0.0 || (!m_level && highest <= ceiling)) return 1.0;
    const double wanted = m_level ? std::min(std::pow(10.0, *m_level / 20.0), ceiling) : ceiling;
    return wanted / highest;
}

} // namespace eq
