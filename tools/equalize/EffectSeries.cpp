#include "tools/equalize/EffectSeries.h"

namespace eq {

EffectSeries::EffectSeries(const EffectLibrary& library, const Settings::Series& settings, int sampleRate) {
    for (const Settings::Resolved& values : settings) m_effects.emplace_back(library, values, sampleRate);
}

int EffectSeries::delay() const {
    int sum = 0;
    for (const EffectInstance& effect : m_effects) sum += effect.delay();
    return sum;
}

void EffectSeries::process(float* first, float* second, int frames) noexcept {
    for (EffectInstance& effect : m_effects) effect.process(first, second, frames);
}

std::vector<NormalisedValues> EffectSeries::parameters() const {
    std::vector<NormalisedValues> values;
    for (const EffectInstance& effect : m_effects) values.push_back(effect.parameters());
    return values;
}

} // namespace eq
