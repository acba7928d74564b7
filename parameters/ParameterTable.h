#pragma once

#include "engine/FilterDesign.h"

#include <cmath>
#include <iterator>

/// What a parameter measures, which settles how its value is shown.
enum class Quantity { Decibels, Frequency, Q };

/// One of the 13 parameters. Its normalised value p runs from 0 to 1, and 0 is the top of the range.
struct Parameter {
    const char* name;
    const char* label;
    float defaultValue;
    Quantity quantity;
    double (*engineValue)(double p); ///< dB, Hz or plain Q
};

namespace parameterscale {

inline double volumeInDb(double p) {
    return (p - 0.5) * -24.0;
}
inline double frequencyInHz(double p) {
    return 20.0 * std::pow(10.0, (1.0 - p) * 3.0);
}
inline double gainInDb(double p) {
    return (p - 0.5) * -20.0;
}
inline double quality(double p) {
    return 10.0 - p * 9.0;
}

} // namespace parameterscale

/// In the order of the host's indexes. The default frequencies put the bands a decade apart: 20 Hz, 200 Hz, 2 kHz and
/// 20 kHz.
inline constexpr Parameter Parameters[] = {
    {"Volume", "dB", 0.5F, Quantity::Decibels, parameterscale::volumeInDb},
    {"Frequency(1)", "Hz", 1.0F, Quantity::Frequency, parameterscale::frequencyInHz},
    {"Frequency(2)", "Hz", 2.0F / 3.0F, Quantity::Frequency, parameterscale::frequencyInHz},
    {"Frequency(3)", "Hz", 1.0F / 3.0F, Quantity::Frequency, parameterscale::frequencyInHz},
    {"Frequency(4)", "Hz", 0.0F, Quantity::Frequency, parameterscale::frequencyInHz},
    {"Gain(1)", "dB", 0.5F, Quantity::Decibels, parameterscale::gainInDb},
    {"Gain(2)", "dB", 0.5F, Quantity::Decibels, parameterscale::gainInDb},
    {"Gain(3)", "dB", 0.5F, Quantity::Decibels, parameterscale::gainInDb},
    {"Gain(4)", "dB", 0.5F, Quantity::Decibels, parameterscale::gainInDb},
    {"Q(1)", "", 5.0F / 9.0F, Quantity::Q, parameterscale::quality},
    {"Q(2)", "", 5.0F / 9.0F, Quantity::Q, parameterscale::quality},
    {"Q(3)", "", 5.0F / 9.0F, Quantity::Q, parameterscale::quality},
    {"Q(4)", "", 5.0F / 9.0F, Quantity::Q, parameterscale::quality},
};
static_assert(std::size(Parameters) == ParameterCount);

inline constexpr bool isParameter(int index) {
    return index >= 0 && index < ParameterCount;
}
