#pragma once

#include "parameters/DisplayText.h"

#include <span>
#include <string>
#include <string_view>

namespace eq {

/// The texts that the library looks up, and the place where each text is shown.
namespace lngcheck {

/// The context in which the library looks first. It has the name of the library's file.
inline constexpr std::string_view ModuleContext = "Parametric Equalizer";
/// The context for all modules, in which the library looks second.
inline constexpr std::string_view SharedContext = "Shared";

/// The largest number of bytes that the effect shows for a number with its unit.
inline constexpr int MostDisplayBytes = static_cast<int>(DisplayCapacity) - 1;

struct KnownText {
    std::string_view key;
    int width;               ///< the width of the narrowest control that shows the text, in dialog units
    std::string number = {}; ///< the longest number before a unit word; empty for other texts
};

[[nodiscard]] std::span<const KnownText> knownTexts();

/// Returns the text with this key, or null for a key that the library does not look up. Case does not matter.
[[nodiscard]] const KnownText* findKnownText(std::string_view key);

/// Returns whether the library looks up texts in this context. Case does not matter.
[[nodiscard]] bool isKnownContext(std::string_view context) noexcept;

} // namespace lngcheck

} // namespace eq
