#include "curve/drawing/Painting.h"

#include <numbers>

namespace eq {

void addRoundRect(cairo_t* cr, double x, double y, double width, double height, double radius) noexcept {
    constexpr double Quarter = std::numbers::pi / 2.0;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + width - radius, y + radius, radius, -Quarter, 0.0);
    cairo_arc(cr, x + width - radius, y + height - radius, radius, 0.0, Quarter);
    cairo_arc(cr, x + radius, y + height - radius, radius, Quarter, 2.0 * Quarter);
    cairo_arc(cr, x + radius, y + radius, radius, 2.0 * Quarter, 3.0 * Quarter);
    cairo_close_path(cr);
}

} // namespace eq
