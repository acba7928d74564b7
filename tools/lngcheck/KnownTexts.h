#pragma once

#include "parameters/DisplayText.h"

#include <span>
#include <string>
#include <string_view>

namespace eq {

/// The texts that the library looks up, and where each of them shows.
namespace lngcheck {

/// The context that the library asks first; it is named as the library's file.
inline constexpr std::string_view ModuleContext = "Parametric Equalizer";
/// The context that serves all modules.
inline constexpr std::string_view SharedContext = "Shared";

/// The effect gives at most this many bytes for a number and its unit.
inline constexpr int MostDisplayBytes = static_cast<int>(DisplayCapacity) - 1;

struct KnownText {
    std::string_view key;
    int width;               ///< of the control that shows it, in dialog units; of the narrowest, if there are several
    std::string number = {}; ///< the longest number in front of a unit word; empty for all other texts
};

[[nodiscard]] std::span<const KnownText> knownTexts();

/// Null for a key that the library does not look up. Case does not matter.
[[nodiscard]] const KnownText* findKnownText(std::string_view key);

/// Whether the library looks into this context. Case does not matter.
[[nodiscard]] bool isKnownContext(std::string_view context) noexcept;

} // namespace lngcheck

} // namespace eq
