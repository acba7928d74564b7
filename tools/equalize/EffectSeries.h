#pragma once

#include "tools/equalize/EffectInstance.h"

#include <vector>

namespace eq {

/// Instances of the effect, one after the other, for two channels.
class EffectSeries {
public:
    /// Starts an instance for each element of `settings`. Throws FileError.
    EffectSeries(const EffectLibrary& library, const Settings::Series& settings, int sampleRate);

    /// Samples from input to output: the sum of all instances.
    [[nodiscard]] int delay() const;

    /// Equalizes `frames` samples of both channels in place.
    void process(float* first, float* second, int frames) noexcept;

    /// The values of each instance.
    [[nodiscard]] std::vector<NormalisedValues> parameters() const;

private:
    std::vector<EffectInstance> m_effects;
};

} // namespace eq
