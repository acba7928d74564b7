#pragma once

#include <string_view>

namespace eq::standin {

/// Equality that takes the ASCII letters of both cases for equal.
bool equalNoCase(std::string_view a, std::string_view b) noexcept;

/// Whether a text ends in another by that equality.
bool endsNoCase(std::string_view text, std::string_view end) noexcept;

} // namespace eq::standin
