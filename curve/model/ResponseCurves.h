#pragma once

#include "engine/FilterDesign.h"
#include "engine/ParameterArray.h"

#include <array>
#include <complex>
#include <optional>
#include <span>
#include <vector>

namespace eq {

/// The response of each band and of all together, in dB at evenly spaced places of the frequency axis. The values come
/// from the coefficients that the engine filters with.
class ResponseCurves {
public:
    /// `designRate` in Hz. The first place is at 20 Hz and the last at 20 kHz.
    explicit ResponseCurves(double designRate) : rate(designRate) {}

    /// Sets the number of places, at least 2. The curves are then computed at the next `update`.
    void resize(int places);
    /// Computes the bands whose values have changed, and their sum. `values` are as the engine receives them.
    void update(const float (&values)[ParameterCount]);

    [[nodiscard]] std::span<const double> band(int number) const { return bands[static_cast<std::size_t>(number)]; }
    [[nodiscard]] std::span<const double> sum() const { return total; }
    /// Returns the sum's largest distance from 0 dB.
    [[nodiscard]] double largest() const noexcept;

private:
    void computeBand(const FilterDesign& design, int number);

    double rate;
    std::vector<std::complex<double>> delays; ///< z^-1 at each place
    std::array<std::vector<double>, BandCount> bands;
    std::vector<double> total;
    std::optional<FilterDesign> shown;
};

} // namespace eq
