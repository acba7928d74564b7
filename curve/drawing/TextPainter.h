#pragma once

#include "curve/drawing/Painting.h"

#include <array>
#include <memory>
#include <string_view>

#include <pango/pangocairo.h>

namespace eq {

enum class Font { Axis, Caption, Value, Badge };
enum class Align { Left, Centre, Right };

/// Draws lines of text in the system's fonts. Pango finds a font for each script.
class TextPainter {
public:
    explicit TextPainter(double scale);

    /// Draws a line of text. `x` is the position of its left end, centre or right end, as `align` says, and `y` is the
    /// middle of its height. A text that is wider than `most` pixels ends with an ellipsis; -1 means no limit.
    void draw(cairo_t* cr, Font font, std::string_view text, double x, double y, Align align, const Colour& colour,
              int most = -1) const;
    /// Returns the width of a text in pixels.
    [[nodiscard]] int widthOf(Font font, std::string_view text) const;
    /// Returns the position of a byte of the text, in pixels from the left end of the text.
    [[nodiscard]] double placeOf(Font font, std::string_view text, std::size_t byte) const;

private:
    struct ObjectDeleter {
        void operator()(void* object) const noexcept { g_object_unref(object); }
    };
    static constexpr std::size_t FontCount = 4;

    [[nodiscard]] PangoLayout* set(Font font, std::string_view text, int most) const;

    std::unique_ptr<PangoContext, ObjectDeleter> context;
    std::array<std::unique_ptr<PangoLayout, ObjectDeleter>, FontCount> layouts;
};

} // namespace eq
