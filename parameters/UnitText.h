#pragma once

#include "parameters/ParameterTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace eq {

/// The unit words that a text may end with.
struct UnitWords {
    std::string decibel = "dB";
    std::string hertz = "Hz";
    std::string kilohertz = "kHz";
};

/// Returns the number of a text such as "80", "1.2k", "1.2 kHz", "-3dB" or "60Hz" in the unit of the parameter; nothing
/// for another unit. Upper and lower case of ASCII letters are the same.
[[nodiscard]] std::optional<double> parseWithUnit(ParameterKind kind, std::string_view text,
                                                  const UnitWords& words = {});

} // namespace eq
