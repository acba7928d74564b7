#pragma once

#include "parameters/ParameterTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace eq {

/// The unit words that may be at the end of a text.
struct UnitWords {
    std::string decibel = "dB";
    std::string hertz = "Hz";
    std::string kilohertz = "kHz";
};

/// Returns the value of a text such as "80", "1.2k", "1.2 kHz", "-3dB" or "60Hz", in the unit of the kind. Returns
/// nothing if the text is not a number, or if its unit does not fit the kind. Ignores the case of ASCII letters.
[[nodiscard]] std::optional<double> parseWithUnit(ParameterKind kind, std::string_view text,
                                                  const UnitWords& words = {});

} // namespace eq
