#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/ParameterText.h"

#include <vector>

namespace eq {

/// What effects in series do to an impulse, as heard at one sampling rate.
class Response {
public:
    /// Sends an impulse through fresh instances. Throws FileError.
    Response(const EffectLibrary& library, const std::vector<NormalisedValues>& values, int sampleRate);

    /// `frequency` in Hz, below half the rate.
    [[nodiscard]] double decibelsAt(double frequency) const;

private:
    int m_sampleRate;
    std::vector<float> m_samples; ///< up to where they no longer count
};

} // namespace eq
