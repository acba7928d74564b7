#pragma once

#include <string_view>

namespace eq {

/// Returns the pixels per unit of the design for the resources of an X display, one "name: value" per line: Xft.dpi
/// divided by 96, or 1 without that resource. The result is limited to 0.75 to 4.
[[nodiscard]] double displayScaleOf(std::string_view resources) noexcept;

} // namespace eq
