#pragma once

#include <string_view>

namespace eq {

/// Returns the scale factor of an X display, in pixels per unit of the design: the resource Xft.dpi divided by 96,
/// limited to 0.75 to 4. Returns 1 without this resource. `resources` has one "name: value" per line.
[[nodiscard]] double displayScaleOf(std::string_view resources) noexcept;

} // namespace eq
