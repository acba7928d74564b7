#pragma once

#include "parameters/ParameterTable.h"

#include <string>

namespace eq {

/// Returns a parameter's name in presets: "volume", "band1.freq", "band1.gain", "band1.q" and so on.
[[nodiscard]] inline std::string presetNameOf(const Parameter& parameter) {
    const std::string symbol = scaleOf(parameter.kind).symbol;
    return parameter.band == 0 ? symbol : "band" + std::to_string(parameter.band) + "." + symbol;
}

/// Returns the symbol of a parameter's LV2 port: "volume", "freq1", "gain1", "q1" and so on. Sessions and presets of
/// users contain these symbols, so they never change.
[[nodiscard]] inline std::string portSymbolOf(const Parameter& parameter) {
    const std::string symbol = scaleOf(parameter.kind).symbol;
    return parameter.band == 0 ? symbol : symbol + std::to_string(parameter.band);
}

} // namespace eq
