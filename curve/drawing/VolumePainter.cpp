#include "curve/drawing/VolumePainter.h"

#include <cmath>
#include <numbers>
#include <string>

namespace eq {

namespace {

// Lengths at a scale factor of 1.
constexpr double TrackWidth = 4.0;
constexpr double ThumbWidth = 26.0;
constexpr double ThumbHeight = 14.0;
constexpr double TrackLeft = 18.0;
constexpr double LabelLeft = 18.0; ///< from the middle of the track
constexpr double DimmedSlider = 0.4;

} // namespace

void VolumePainter::drawSlider(cairo_t* cr, const EditorState& state, bool isBypassed) const {
    const EditorLayout& layout = state.geometry.layout;
    const double scale = layout.scale;
    const DecibelAxis axis = state.geometry.volume();
    const double x = std::round(layout.track.x + TrackLeft * scale);
    fillRect(cr, layout.volume, palette::Window);

    for (int decibels = -12; decibels <= 12; decibels += 6) {
        const std::string label = (decibels > 0 ? "+" : "") + std::to_string(decibels);
        texts.draw(cr, Font::Axis, label, x + LabelLeft * scale, axis.yOf(decibels), Align::Left,
                   decibels == 0 ? palette::Caption : palette::OctaveLabel);
    }
    const double half = TrackWidth / 2.0 * scale;
    addRoundRect(cr, x - half, axis.top - half, 2.0 * half, axis.height + 2.0 * half, half);
    setColour(cr, palette::Track);
    cairo_fill(cr);

    const double y = axis.yOf(state.model.limitedValue(VolumeIndex));
    const double strength = isBypassed ? DimmedSlider : 1.0;
    cairo_rectangle(cr, x - half, std::min(y, axis.yOf(0.0)), 2.0 * half, std::fabs(y - axis.yOf(0.0)));
    setColour(cr, palette::TrackFill, strength);
    cairo_fill(cr);

    const double width = ThumbWidth * scale;
    const double height = ThumbHeight * scale;
    const double top = std::round(y - height / 2.0);
    const bool isFocus = state.focus == VolumeTarget;
    if (isFocus || state.hover == VolumeTarget) {
        const double gap = 3.0 * scale;
        addRoundRect(cr, x - width / 2.0 - gap, top - gap, width + 2.0 * gap, height + 2.0 * gap, 6.0 * scale);
        setColour(cr, palette::Focus, isFocus && state.hasKeyboard ? 1.0 : 0.4);
        cairo_set_line_width(cr, 1.5 * scale);
        cairo_stroke(cr);
    }
    addRoundRect(cr, x - width / 2.0, top, width, height, 4.0 * scale);
    setColour(cr, palette::Window);
    cairo_fill_preserve(cr);
    setColour(cr, palette::Sum, strength);
    cairo_fill(cr);
    setColour(cr, palette::Badge);
    cairo_set_line_width(cr, 1.5 * scale);
    cairo_move_to(cr, x - width / 2.0 + 6.0 * scale, top + height / 2.0);
    cairo_line_to(cr, x + width / 2.0 - 6.0 * scale, top + height / 2.0);
    cairo_stroke(cr);
}

void VolumePainter::drawBypass(cairo_t* cr, const EditorState& state, bool isBypassed) const {
    const Rect& r = state.geometry.layout.bypass;
    if (r.width == 0) return;
    const double scale = state.geometry.layout.scale;
    const double x = r.x + r.width / 2.0;
    const double y = r.y + r.height / 2.0;
    const bool isFocus = state.focus == BypassTarget;
    fillRect(cr, r, palette::Window);
    addRoundRect(cr, r.x + scale, r.y + scale, r.width - 2.0 * scale, r.height - 2.0 * scale, 6.0 * scale);
    setColour(cr, state.hover == BypassTarget ? palette::CardHover : palette::Card);
    cairo_fill_preserve(cr);
    setColour(cr, palette::Focus, isFocus && state.hasKeyboard ? 1.0 : isFocus ? 0.4 : 0.0);
    cairo_set_line_width(cr, 1.5 * scale);
    cairo_stroke(cr);
    // The symbol of a power switch. It is coloured while the effect is not bypassed.
    constexpr double Up = -std::numbers::pi / 2.0;
    constexpr double Opening = 0.7;
    setColour(cr, isBypassed ? palette::OctaveLabel : palette::Bands[1]);
    cairo_set_line_width(cr, 2.0 * scale);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_new_path(cr);
    cairo_arc(cr, x, y + scale, 6.0 * scale, Up + Opening, Up - Opening + 2.0 * std::numbers::pi);
    cairo_move_to(cr, x, y - 7.0 * scale);
    cairo_line_to(cr, x, y - scale);
    cairo_stroke(cr);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
}

} // namespace eq
