#pragma once

#include "parameters/ParameterTable.h"

#include <cstddef>
#include <string>

namespace eq {

/// Bytes of the longest display text and its terminator. Hosts and the editor give buffers of this size.
inline constexpr std::size_t DisplayCapacity = 28;

/// Frequencies from the first limit on are in kilohertz, and from the second on without a decimal.
inline constexpr float LowestInKilohertz = 1000.0F;
inline constexpr float LowestInWholeKilohertz = 10000.0F;

/// The language keys of the unit words.
inline constexpr const char* DecibelKey = "IDS_DB";
inline constexpr const char* HertzKey = "IDS_Hz";
inline constexpr const char* KilohertzKey = "IDS_kHz";

/// A display text before its unit word is looked up.
struct DisplayParts {
    std::string number;
    const char* unitKey; ///< of the language files; null for a value without a unit
};
[[nodiscard]] DisplayParts displayPartsOf(ParameterKind kind, double value);

/// Writes a parameter's value and its unit word, such as "+3.5 dB", into `text`, which holds DisplayCapacity bytes.
///
/// The unit word comes from the language files, in the system's ANSI code page; without a translation its key shows.
/// A text that is too long is cut at the boundary of a character. The decimal separator is a point in every locale.
void writeDisplay(const Parameter& parameter, float p, char* text);

} // namespace eq
