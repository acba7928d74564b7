#pragma once

#include "tools/equalize/settings/Biquad.h"
#include "tools/equalize/settings/FilterText.h"

#include <vector>

namespace eq {

/// The response of the filters and the curve of a text at a rate, without the Preamp of the text.
class TargetResponse {
public:
    /// Throws FileError for a filter whose middle is not between 0 and half the rate.
    TargetResponse(const FilterText& text, int sampleRate);

    /// Returns the response in dB at `frequency` in Hz, which must be above 0 and below half the rate.
    [[nodiscard]] double decibelsAt(double frequency) const;

private:
    [[nodiscard]] double curveAt(double frequency) const;

    int m_sampleRate;
    std::vector<Biquad> m_sections;
    std::vector<CurvePoint> m_curve;
};

} // namespace eq
