#pragma once

#include <string_view>

namespace standin {

/// Equality that takes the ASCII letters of both cases for equal.
bool equalNoCase(std::string_view a, std::string_view b) noexcept;

/// Whether a file name fits a pattern of '*' (any text) and '?' (any one byte); case does not matter.
bool fitsPattern(std::string_view name, std::string_view pattern) noexcept;

} // namespace standin
