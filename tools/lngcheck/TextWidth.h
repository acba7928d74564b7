#pragma once

#include <string_view>

namespace eq {

/// An estimate of how much room a text takes in a dialog, for there is no font to measure with.
///
/// The font is taken to be a plain sans-serif of 8 points at 96 dots an inch, 11 pixels high, with the usual advances
/// of such a face. It makes the horizontal dialog base unit 6 pixels, so that a control of W dialog units has W * 6 / 4
/// pixels. Dialogs in another font scale text and controls together.
namespace lngcheck {

/// A mnemonic's '&' takes no room. A character is one UTF-16 code unit.
[[nodiscard]] int textWidth(std::wstring_view text) noexcept;

[[nodiscard]] int controlWidth(int dialogUnits) noexcept;

} // namespace lngcheck

} // namespace eq
