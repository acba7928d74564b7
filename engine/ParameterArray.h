#pragma once

// The 13 values of one setting of the equalizer, in engineering units: their order and their ranges.

namespace eq {

/// The number of peak sections in series.
inline constexpr int BandCount = 4;
/// The number of values in a parameter array: the volume, then the frequencies, the gains and the Qs of the bands.
inline constexpr int ParameterCount = 1 + 3 * BandCount;

/// The indices of the values in the array. A band's number is 0 to 3.
inline constexpr int VolumeIndex = 0;
constexpr int frequencyIndex(int band) noexcept {
    return 1 + band;
}
constexpr int gainIndex(int band) noexcept {
    return 1 + BandCount + band;
}
constexpr int qIndex(int band) noexcept {
    return 1 + 2 * BandCount + band;
}

struct ValueRange {
    double lowest;
    double highest;
};
inline constexpr ValueRange VolumeRange = {-12.0, 12.0};      ///< dB
inline constexpr ValueRange FrequencyRange = {20.0, 20000.0}; ///< Hz
inline constexpr ValueRange GainRange = {-10.0, 10.0};        ///< dB
inline constexpr ValueRange QRange = {1.0, 10.0};             ///< centre divided by bandwidth

} // namespace eq
