#pragma once

#include <string>
#include <string_view>

namespace eq {

/// Returns `text` as it can be sent to a terminal: control characters, and bytes that are not UTF-8, are written as
/// "\x1B".
[[nodiscard]] std::string printable(std::string_view text);

/// Returns a JSON string of `text`, in which control characters and bytes that are not UTF-8 are written as on a
/// terminal.
[[nodiscard]] std::string jsonString(std::string_view text);

} // namespace eq
