#pragma once

#include <string_view>

namespace eq::standin {

/// Returns whether two texts are equal without regard to ASCII case.
bool equalNoCase(std::string_view a, std::string_view b) noexcept;

/// Returns whether a text ends in another text, without regard to ASCII case.
bool endsNoCase(std::string_view text, std::string_view end) noexcept;

} // namespace eq::standin
