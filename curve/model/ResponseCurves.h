#pragma once

#include "engine/FilterDesign.h"
#include "engine/ParameterArray.h"

#include <array>
#include <complex>
#include <optional>
#include <span>
#include <vector>

namespace eq {

/// The response of each band, and of all bands with the volume, in dB at evenly spaced positions of the frequency axis.
/// The responses are computed from the coefficients with which the engine filters.
class ResponseCurves {
public:
    /// `designRate` is in Hz. The first position is at 20 Hz and the last position at 20 kHz.
    explicit ResponseCurves(double designRate) : rate(designRate) {}

    /// Sets the number of positions, at least 2. The next `update` then computes all curves.
    void resize(int places);
    /// Computes the curves of the bands whose values have changed, and the sum of all curves. `values` have the order
    /// and the units of ParameterArray.h.
    void update(const float (&values)[ParameterCount]);

    [[nodiscard]] std::span<const double> band(int number) const { return bands[static_cast<std::size_t>(number)]; }
    [[nodiscard]] std::span<const double> sum() const { return total; }
    /// Returns the sum's largest distance from 0 dB.
    [[nodiscard]] double largest() const noexcept;

private:
    void computeBand(const FilterDesign& design, int number);

    double rate;
    std::vector<std::complex<double>> delays; ///< z^-1 at each position
    std::array<std::vector<double>, BandCount> bands;
    std::vector<double> total;
    std::optional<FilterDesign> shown;
};

} // namespace eq
