#pragma once

#include "tools/equalize/settings/Biquad.h"
#include "tools/equalize/settings/FilterText.h"

#include <vector>

namespace eq {

/// What the filters and the curve of a text do at a rate, without its Preamp.
class TargetResponse {
public:
    /// Throws FileError for a filter whose frequency the rate does not have.
    TargetResponse(const FilterText& text, int sampleRate);

    /// `frequency` in Hz, above 0 and below half the rate.
    [[nodiscard]] double decibelsAt(double frequency) const;

private:
    [[nodiscard]] double curveAt(double frequency) const;

    int m_sampleRate;
    std::vector<Biquad> m_sections;
    std::vector<CurvePoint> m_curve;
};

} // namespace eq
