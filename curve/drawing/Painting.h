#pragma once

#include "curve/drawing/Palette.h"
#include "curve/model/EditorLayout.h"

#include <memory>

#include <cairo.h>

namespace eq {

/// The radius of rounded corners at a scale factor of 1.
constexpr double Corner = 6.0;

struct CairoDeleter {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using Context = std::unique_ptr<cairo_t, CairoDeleter>;

inline void setColour(cairo_t* cr, const Colour& c, double alpha = 1.0) noexcept {
    cairo_set_source_rgba(cr, c.red, c.green, c.blue, alpha);
}

inline void fillRect(cairo_t* cr, const Rect& r, const Colour& c) noexcept {
    setColour(cr, c);
    cairo_rectangle(cr, r.x, r.y, r.width, r.height);
    cairo_fill(cr);
}

/// Adds a rectangle with rounded corners to the path.
void addRoundRect(cairo_t* cr, double x, double y, double width, double height, double radius) noexcept;

} // namespace eq
