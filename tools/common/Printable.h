#pragma once

#include <string>
#include <string_view>

namespace eq {

/// Returns `text` in a form that is safe for a terminal. Each byte of a control character, and each byte that is not
/// UTF-8, is written as its hexadecimal code, such as "\x1B".
[[nodiscard]] std::string printable(std::string_view text);

/// Returns `text` as a JSON string, with its quotes. Control characters and bytes that are not UTF-8 are written as
/// `printable` writes them.
[[nodiscard]] std::string jsonString(std::string_view text);

} // namespace eq
