#pragma once

#include <string>
#include <string_view>

namespace eq {

/// Properties of letters that are the same in every locale. A character is one UTF-16 code unit.
namespace lngcheck {

enum class Script { None, Latin, Greek, Cyrillic, Other };

/// Returns the script of a letter; None for a digit, a sign or a punctuation mark.
[[nodiscard]] Script scriptOf(wchar_t c) noexcept;

/// Returns whether a character is a blank of any width, or a tab.
[[nodiscard]] bool isBlank(wchar_t c) noexcept;

/// Returns the small form of a Latin, Greek or Cyrillic letter, and any other character unchanged.
[[nodiscard]] wchar_t smallLetter(wchar_t c) noexcept;

/// Returns the ASCII form of a full-width character and of a minus sign, and any other character unchanged.
[[nodiscard]] wchar_t halfWidth(wchar_t c) noexcept;

/// Returns the number of characters to change, insert or remove until both names are equal, without regard to ASCII
/// case. Names of more than 64 characters are never similar: the result is then the length of the longer name.
[[nodiscard]] std::size_t differences(std::string_view a, std::string_view b);

} // namespace lngcheck

} // namespace eq
