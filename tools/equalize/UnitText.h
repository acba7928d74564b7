#pragma once

#include "parameters/ParameterTable.h"

#include <optional>
#include <string_view>

namespace eq {

/// Returns the number of a text such as "80", "1.2k", "1.2 kHz", "-3dB" or "60Hz" in the unit of the parameter; nothing
/// for another unit. Upper and lower case are the same.
[[nodiscard]] std::optional<double> parseWithUnit(ParameterKind kind, std::string_view text);

} // namespace eq
