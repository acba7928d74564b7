#pragma once

#include "parameters/ParameterTable.h"

#include <cstddef>
#include <string>

namespace eq {

/// The size in bytes of the longest display text with its terminator. Hosts and the editor pass buffers of this size.
inline constexpr std::size_t DisplayCapacity = 28;

/// Limits in hertz. The display of a frequency is in kilohertz from the first limit on, and has no decimal from the
/// second limit on.
inline constexpr float LowestInKilohertz = 1000.0F;
inline constexpr float LowestInWholeKilohertz = 10000.0F;

/// The language keys of the unit words.
inline constexpr const char* DecibelKey = "IDS_DB";
inline constexpr const char* HertzKey = "IDS_Hz";
inline constexpr const char* KilohertzKey = "IDS_kHz";

/// The number of a display text, and the key of its unit word.
struct DisplayParts {
    std::string number;
    const char* unitKey; ///< a key of the language files; null for a value without a unit
};
/// Returns the parts of a value's display text. `value` is in the unit of the kind.
[[nodiscard]] DisplayParts displayPartsOf(ParameterKind kind, double value);

/// Writes the display text for the normalised value `p`, such as "+3.5 dB", and a terminator into `text`, a buffer of
/// DisplayCapacity bytes.
///
/// The unit word comes from the language files, in the system's ANSI code page. Without a translation, the text
/// contains the key of the unit word. A text that is too long ends at a character boundary. The decimal separator is a
/// point in every locale.
void writeDisplay(const Parameter& parameter, float p, char* text);

} // namespace eq
