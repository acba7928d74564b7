#include "tools/equalize/PeakGain.h"

#include "parameters/UnitText.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace eq {

void SamplePeaks::add(const float* samples, sf_count_t count) {
    for (sf_count_t index = 0; index < count; ++index) {
        if (samples[index] > highest) highest = samples[index];
        if (samples[index] < lowest) lowest = samples[index];
    }
}

double SamplePeaks::level() const {
    return static_cast<double>(std::max(highest, -lowest));
}

void PeakGain::setLevel(std::string_view decibels) {
    constexpr double Lowest = -100.0;
    m_level = parseWithUnit(ParameterKind::Volume, decibels);
    if (!m_level || *m_level < Lowest || *m_level > 0.0)
        throw UsageError("--normalize: " + quoted(trimmed(decibels)) + " is not a number from -100 to 0 dB");
}

double PeakGain::gainFor(const SamplePeaks& peaks, int format, bool isDithered) const {
    if (std::isinf(peaks.level()))
        throw FileError("the sound has infinite samples after the effect, so there is no gain for it; lower --volume");
    if (peaks.level() == 0.0) return 1.0;

    // Integers range from -1 to one step below 1. Samples are floats with 24 significant bits, so the step is never
    // smaller than the step of 24-bit integers. The noise is at most one step.
    constexpr int FloatBits = 24;
    const int bits = integerBits(format);
    const double step = bits == 0 ? 0.0 : std::ldexp(1.0, 1 - std::min(bits, FloatBits));
    const double noise = isDithered ? step : 0.0;
    const double highLimit = 1.0 - step - noise;
    const double lowLimit = 1.0 - noise;
    const auto high = static_cast<double>(peaks.highest);
    const auto low = -static_cast<double>(peaks.lowest);
    constexpr double Any = std::numeric_limits<double>::infinity();
    // NOLINTNEXTLINE(bugprone-narrowing-conversions): the check mistakes infinity for a conversion
    const double fitting = std::min(high > 0.0 ? highLimit / high : Any, low > 0.0 ? lowLimit / low : Any);
    if (m_level) return std::min(std::pow(10.0, *m_level / 20.0) / peaks.level(), fitting);

    // Without dither, a sample less than half a step above the limit is rounded down to the limit.
    const double rounded = isDithered ? 0.0 : step / 2.0;
    const bool clips = high >= highLimit + rounded || low > lowLimit + rounded;
    return clips ? std::min(fitting, 1.0) : 1.0;
}

} // namespace eq
