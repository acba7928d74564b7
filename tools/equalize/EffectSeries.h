#pragma once

#include "tools/equalize/EffectInstance.h"

#include <vector>

namespace eq {

/// Several instances of the effect in series, for two channels.
class EffectSeries {
public:
    /// Starts an instance for each element of `settings`. Throws FileError.
    EffectSeries(const EffectLibrary& library, const Settings::Series& settings, int sampleRate);

    /// Returns the delay from input to output in samples: the sum of the delays of all instances.
    [[nodiscard]] int delay() const;

    /// Equalizes `frames` samples of both channels in place.
    void process(float* first, float* second, int frames) noexcept;

    /// Returns the parameter values of each instance.
    [[nodiscard]] std::vector<NormalisedValues> parameters() const;

private:
    std::vector<EffectInstance> m_effects;
};

} // namespace eq
