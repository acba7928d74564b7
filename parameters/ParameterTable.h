#pragma once

#include "engine/ParameterArray.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace eq {

/// The quantity that a parameter controls. The kind determines the parameter's range, unit, mapping, and form of the
/// display text.
enum class ParameterKind { Volume, Frequency, Gain, Q };

inline constexpr int ParameterKindCount = 4;

/// The properties that the parameters of one kind share.
struct ParameterScale {
    const char* symbol; ///< the name in presets, and a part of the LV2 symbol
    const char* unit;   ///< empty for Q
    ValueRange range;   ///< in the unit
};

/// One row per kind, in the order of ParameterKind.
inline constexpr ParameterScale ParameterScales[] = {
    {"volume", "dB", VolumeRange},
    {"freq", "Hz", FrequencyRange},
    {"gain", "dB", GainRange},
    {"q", "", QRange},
};
static_assert(std::size(ParameterScales) == ParameterKindCount);

constexpr const ParameterScale& scaleOf(ParameterKind kind) noexcept {
    return ParameterScales[static_cast<int>(kind)];
}

/// One of the 13 parameters. A normalised value p is 0 to 1, and 0 is the top of the range.
struct Parameter {
    const char* name;
    ParameterKind kind;
    int band;            ///< 1 to 4; 0 for the volume
    float defaultP;      ///< the normalised default
    double defaultValue; ///< the default in the parameter's unit
};

/// One row per parameter, in the order of the host's parameter indexes, which is also the order of the engine's values.
/// The default frequencies are a decade apart.
inline constexpr Parameter Parameters[] = {
    {"Volume", ParameterKind::Volume, 0, 0.5F, 0.0},
    {"Frequency(1)", ParameterKind::Frequency, 1, 1.0F, 20.0},
    {"Frequency(2)", ParameterKind::Frequency, 2, 2.0F / 3.0F, 200.0},
    {"Frequency(3)", ParameterKind::Frequency, 3, 1.0F / 3.0F, 2000.0},
    {"Frequency(4)", ParameterKind::Frequency, 4, 0.0F, 20000.0},
    {"Gain(1)", ParameterKind::Gain, 1, 0.5F, 0.0},
    {"Gain(2)", ParameterKind::Gain, 2, 0.5F, 0.0},
    {"Gain(3)", ParameterKind::Gain, 3, 0.5F, 0.0},
    {"Gain(4)", ParameterKind::Gain, 4, 0.5F, 0.0},
    {"Q(1)", ParameterKind::Q, 1, 5.0F / 9.0F, 5.0},
    {"Q(2)", ParameterKind::Q, 2, 5.0F / 9.0F, 5.0},
    {"Q(3)", ParameterKind::Q, 3, 5.0F / 9.0F, 5.0},
    {"Q(4)", ParameterKind::Q, 4, 5.0F / 9.0F, 5.0},
};
static_assert(std::size(Parameters) == ParameterCount);

constexpr bool isParameter(int index) noexcept {
    return index >= 0 && index < ParameterCount;
}

/// Returns the index of a parameter. `band` is 1 to 4, and is ignored for the volume.
constexpr int indexOf(ParameterKind kind, int band) noexcept {
    switch (kind) {
    case ParameterKind::Frequency:
        return frequencyIndex(band - 1);
    case ParameterKind::Gain:
        return gainIndex(band - 1);
    case ParameterKind::Q:
        return qIndex(band - 1);
    default:
        return VolumeIndex;
    }
}

/// Returns the value in the unit of the kind for a normalised value. The scale of frequencies is logarithmic, with one
/// decade per third of the range. All other scales are linear. The result of each formula is fixed to the last bit. The
/// formulas therefore contain the ranges as numbers, instead of computing with `ValueRange`.
inline double valueOf(ParameterKind kind, double p) {
    switch (kind) {
    case ParameterKind::Volume:
        return (p - 0.5) * -24.0;
    case ParameterKind::Frequency:
        return 20.0 * std::pow(10.0, (1.0 - p) * 3.0);
    case ParameterKind::Gain:
        return (p - 0.5) * -20.0;
    default:
        return 10.0 - p * 9.0;
    }
}

/// Returns the normalised value for a value in the unit of the kind. A value outside the range is limited; a NaN counts
/// as the lowest value.
inline float normalisedOf(ParameterKind kind, double value) {
    const auto [lowest, highest] = scaleOf(kind).range;
    value = value >= lowest ? std::min(value, highest) : lowest;
    const double p = kind == ParameterKind::Frequency ? std::log(highest / value) / std::log(highest / lowest)
                                                      : (highest - value) / (highest - lowest);
    return static_cast<float>(p);
}

} // namespace eq
