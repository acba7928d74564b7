#pragma once

#include <string_view>

namespace eq {

/// Estimates the width of a text in a dialog. A measurement would need the font, which the program does not have.
///
/// The estimate assumes a plain sans-serif font of 8 points at 96 dots per inch, 11 pixels high, with usual character
/// widths. The horizontal dialog base unit is then 6 pixels, so a control of W dialog units has W * 6 / 4 pixels.
/// Another font scales texts and controls together.
namespace lngcheck {

/// Returns the width of a text in pixels. The '&' of a mnemonic has no width. A character is one UTF-16 code unit.
[[nodiscard]] int textWidth(std::wstring_view text) noexcept;

/// Returns the width of a control in pixels.
[[nodiscard]] int controlWidth(int dialogUnits) noexcept;

} // namespace lngcheck

} // namespace eq
