#include "tools/equalize/FrequencyMap.h"

#include "tools/common/Text.h"
#include "tools/equalize/ParameterText.h"

#include <cmath>

namespace eq {

FrequencyMap::FrequencyMap(int sampleRate, bool corrected)
    : m_sampleRate(sampleRate), m_corrected(corrected), m_stretch(sampleRate / DesignRate) {}

bool FrequencyMap::reaches(double wanted) const {
    // The scaling may round an end of the range to a value just outside the range.
    constexpr double Slack = 1e-12;
    const double nominal = toNominal(wanted);
    return nominal >= FrequencyRange.lowest * (1.0 - Slack) && nominal <= FrequencyRange.highest * (1.0 + Slack);
}

std::string FrequencyMap::reachText() const {
    return m_corrected ? landingText() : rangeText(ParameterKind::Frequency);
}

std::string FrequencyMap::landingText() const {
    if (isAtDesignRate()) return rangeText(ParameterKind::Frequency);
    return fixed(std::ceil(FrequencyRange.lowest * m_stretch * 100.0) / 100.0, 2) + " to " +
           fixed(std::floor(FrequencyRange.highest * m_stretch * 100.0) / 100.0, 2) + " Hz";
}

} // namespace eq
