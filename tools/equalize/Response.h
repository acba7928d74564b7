#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/ParameterText.h"

#include <vector>

namespace eq {

/// The frequency response of effects in series at one sampling rate, measured with an impulse.
class Response {
public:
    /// Sends an impulse through new instances. Throws FileError.
    Response(const EffectLibrary& library, const std::vector<NormalisedValues>& values, int sampleRate);

    /// Returns the response in dB at `frequency` in Hz, which must be below half the rate.
    [[nodiscard]] double decibelsAt(double frequency) const;

private:
    int m_sampleRate;
    std::vector<float> m_samples; ///< the impulse response, without its inaudible end
};

} // namespace eq
