#include "curve/drawing/TextPainter.h"

#include <algorithm>
#include <cmath>

namespace eq {

namespace {

struct FontForm {
    double size; ///< in pixels at a scale factor of 1
    PangoWeight weight;
};

/// One row per font, in the order of Font.
constexpr std::array Forms = {FontForm{10.5, PANGO_WEIGHT_NORMAL}, FontForm{10.0, PANGO_WEIGHT_NORMAL},
                              FontForm{12.0, PANGO_WEIGHT_NORMAL}, FontForm{11.5, PANGO_WEIGHT_BOLD}};

} // namespace

TextPainter::TextPainter(double scale) : context(pango_font_map_create_context(pango_cairo_font_map_get_default())) {
    for (std::size_t i = 0; i < FontCount; ++i) {
        layouts[i].reset(pango_layout_new(context.get()));
        PangoFontDescription* const description = pango_font_description_from_string("Sans");
        pango_font_description_set_weight(description, Forms[i].weight);
        pango_font_description_set_absolute_size(description,
                                                 std::round(Forms[i].size * scale * 2.0) / 2.0 * PANGO_SCALE);
        pango_layout_set_font_description(layouts[i].get(), description);
        pango_font_description_free(description);
        pango_layout_set_single_paragraph_mode(layouts[i].get(), TRUE);
        pango_layout_set_ellipsize(layouts[i].get(), PANGO_ELLIPSIZE_END);
        if (static_cast<Font>(i) != Font::Caption) {
            // Select the font of the digits as for English text, because the fonts of some scripts have digits that are
            // hard to read.
            PangoAttrList* const attributes = pango_attr_list_new();
            pango_attr_list_insert(attributes, pango_attr_language_new(pango_language_from_string("en")));
            pango_layout_set_attributes(layouts[i].get(), attributes);
            pango_attr_list_unref(attributes);
        }
    }
}

void TextPainter::draw(cairo_t* cr, Font font, std::string_view text, double x, double y, Align align,
                       const Colour& colour, int most) const {
    PangoLayout* const layout = set(font, text, most);
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(layout, &width, &height);
    const double shift = align == Align::Left ? 0.0 : align == Align::Centre ? width / 2.0 : width;
    setColour(cr, colour);
    cairo_move_to(cr, std::round(x - shift), std::round(y - height / 2.0));
    pango_cairo_show_layout(cr, layout);
}

int TextPainter::widthOf(Font font, std::string_view text) const {
    int width = 0;
    pango_layout_get_pixel_size(set(font, text, -1), &width, nullptr);
    return width;
}

double TextPainter::placeOf(Font font, std::string_view text, std::size_t byte) const {
    PangoRectangle place;
    pango_layout_index_to_pos(set(font, text, -1), static_cast<int>(byte), &place);
    return static_cast<double>(place.x) / PANGO_SCALE;
}

PangoLayout* TextPainter::set(Font font, std::string_view text, int most) const {
    PangoLayout* const layout = layouts[static_cast<std::size_t>(font)].get();
    pango_layout_set_width(layout, most < 0 ? -1 : std::max(most, 1) * PANGO_SCALE);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    return layout;
}

} // namespace eq
