#include "curve/drawing/PlotPainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

namespace eq {

namespace {

// Lengths at a scale factor of 1.
constexpr double NodeRadius = 10.5;
constexpr double RingRadius = 13.5;
constexpr double SumWidth = 2.0;
constexpr double BandWidth = 1.2;
constexpr double LabelGap = 6.0;
constexpr double LeastLineDistance = 22.0;

constexpr double DimmedCurve = 0.3;
constexpr double Reference = 1000.0; ///< Hz; the octave lines are whole octaves above or below
constexpr int LowestOctave = -5;     ///< 31 Hz
constexpr int HighestOctave = 4;     ///< 16 kHz

struct Decade {
    double hertz;
    const char* label;
};
constexpr std::array Decades = {Decade{20.0, "20"}, Decade{100.0, "100"}, Decade{1000.0, "1k"}, Decade{10000.0, "10k"},
                                Decade{20000.0, "20k"}};

std::string octaveLabel(double hertz) {
    const long number = std::lround(hertz < Reference ? hertz : hertz / Reference);
    return std::to_string(number) + (hertz < Reference ? "" : "k");
}

/// Returns the position at which a line of one pixel is sharp: the middle of the pixel.
double sharp(double place) noexcept {
    return std::floor(place) + 0.5;
}

/// Adds a curve to the path. Leaves out points that differ from a straight line by less than a fraction of a pixel,
/// because the drawing time depends on the number of points.
void addCurve(cairo_t* cr, std::span<const double> values, double left, const DecibelAxis& axis) {
    constexpr double Tolerance = 0.1;
    double fromX = left;
    double fromY = axis.yOf(values[0]);
    cairo_move_to(cr, fromX, fromY);
    double lowest = -HUGE_VAL; // slopes of the lines that pass near all points so far
    double highest = HUGE_VAL;
    for (std::size_t i = 1; i < values.size(); ++i) {
        const double x = left + static_cast<double>(i);
        const double y = axis.yOf(values[i]);
        const double slope = (y - fromY) / (x - fromX);
        if (slope < lowest || slope > highest) {
            fromX = x - 1.0;
            fromY = axis.yOf(values[i - 1]);
            cairo_line_to(cr, fromX, fromY);
            lowest = -HUGE_VAL;
            highest = HUGE_VAL;
        }
        lowest = std::max(lowest, (y - Tolerance - fromY) / (x - fromX));
        highest = std::min(highest, (y + Tolerance - fromY) / (x - fromX));
    }
    cairo_line_to(cr, left + static_cast<double>(values.size() - 1), axis.yOf(values.back()));
}

void clipTo(cairo_t* cr, const Rect& r, double corner) {
    addRoundRect(cr, r.x, r.y, r.width, r.height, corner);
    cairo_clip(cr);
}

/// Draws the width of a band as a bar through the band's node.
void drawBandwidth(cairo_t* cr, const EditorState& state, int band, Point node, double strength) {
    const double scale = state.geometry.layout.scale;
    const double f = state.model.limitedValue(frequencyIndex(band));
    const double half = f / state.model.limitedValue(qIndex(band)) / 2.0;
    // The difference of the band's edges is its width f / Q, and their geometric mean is the centre f.
    const double upper = half + std::sqrt(half * half + f * f);
    const double reach = state.geometry.frequencies().xOf(upper) - state.geometry.frequencies().xOf(f);
    const double cap = 4.0 * scale;
    cairo_move_to(cr, node.x - reach, node.y);
    cairo_line_to(cr, node.x + reach, node.y);
    for (const double x : {node.x - reach, node.x + reach}) {
        cairo_move_to(cr, x, node.y - cap);
        cairo_line_to(cr, x, node.y + cap);
    }
    setColour(cr, palette::Bands[static_cast<std::size_t>(band)], strength);
    cairo_set_line_width(cr, 1.5 * scale);
    cairo_stroke(cr);
}

} // namespace

void PlotPainter::drawGrid(cairo_t* cr, const EditorGeometry& geometry) const {
    const Rect& plot = geometry.layout.plot;
    fillRect(cr, geometry.layout.graph, palette::Window);
    setColour(cr, palette::Plot);
    addRoundRect(cr, plot.x, plot.y, plot.width, plot.height, Corner * geometry.layout.scale);
    cairo_fill(cr);
    cairo_set_line_width(cr, std::max(1.0, std::floor(geometry.layout.scale)));
    drawFrequencies(cr, geometry);
    drawDecibels(cr, geometry);
}

void PlotPainter::drawFrequencies(cairo_t* cr, const EditorGeometry& geometry) const {
    const Rect& plot = geometry.layout.plot;
    const double scale = geometry.layout.scale;
    const FrequencyAxis axis = geometry.frequencies();
    const double labelY = plot.bottom() + 10.0 * scale;
    const auto line = [&](double hertz, const Colour& colour) {
        const double x = sharp(axis.xOf(hertz));
        setColour(cr, colour);
        cairo_move_to(cr, x, plot.y);
        cairo_line_to(cr, x, plot.bottom());
        cairo_stroke(cr);
    };
    for (int octave = LowestOctave; octave <= HighestOctave; ++octave) {
        const double hertz = std::ldexp(Reference, octave);
        line(hertz, palette::OctaveLine);
        const std::string label = octaveLabel(hertz);
        const double distance = texts.widthOf(Font::Axis, "0000") + LabelGap * scale;
        const bool isFree = std::ranges::none_of(Decades, [&](const Decade& decade) {
            return std::fabs(axis.xOf(decade.hertz) - axis.xOf(hertz)) < distance;
        });
        if (isFree) texts.draw(cr, Font::Axis, label, axis.xOf(hertz), labelY, Align::Centre, palette::OctaveLabel);
    }
    for (const Decade& decade : Decades) {
        const bool isEdge = decade.hertz == FrequencyRange.lowest || decade.hertz == FrequencyRange.highest;
        if (!isEdge) line(decade.hertz, palette::DecadeLine);
        texts.draw(cr, Font::Axis, decade.label, axis.xOf(decade.hertz), labelY, Align::Centre, palette::Caption);
    }
}

void PlotPainter::drawDecibels(cairo_t* cr, const EditorGeometry& geometry) const {
    const Rect& plot = geometry.layout.plot;
    const double scale = geometry.layout.scale;
    const DecibelAxis axis = geometry.decibels();
    double step = 6.0;
    while (step / (2.0 * axis.range) * axis.height < LeastLineDistance * scale) step *= 2.0;
    const int last = static_cast<int>(axis.range / step);
    for (int i = -last; i <= last; ++i) {
        const double decibels = i * step;
        const double y = sharp(std::clamp(axis.yOf(decibels), static_cast<double>(plot.y), plot.bottom() - 1.0));
        if (std::fabs(decibels) < axis.range) {
            setColour(cr, i == 0 ? palette::ZeroLine : palette::DecadeLine);
            cairo_move_to(cr, plot.x, y);
            cairo_line_to(cr, plot.right(), y);
            cairo_stroke(cr);
        }
        const std::string label = (i > 0 ? "+" : "") + std::to_string(static_cast<int>(decibels));
        const double labelY = std::clamp(y, plot.y + 6.0 * scale, plot.bottom() - 6.0 * scale);
        // Leave space for nodes at the left edge, because they extend beyond the plot.
        texts.draw(cr, Font::Axis, label, plot.x - 14.0 * scale, labelY, Align::Right, palette::Caption);
    }
}

void PlotPainter::drawCurves(cairo_t* cr, const EditorState& state, const ResponseCurves& curves,
                             bool isBypassed) const {
    const EditorGeometry& geometry = state.geometry;
    const Rect& plot = geometry.layout.plot;
    const double scale = geometry.layout.scale;
    const double strength = isBypassed ? DimmedCurve : 1.0;
    const DecibelAxis axis = geometry.decibels();
    const double left = plot.x + 0.5;

    cairo_save(cr);
    clipTo(cr, plot, Corner * scale);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    for (int band = 0; band < BandCount; ++band) {
        // The curve of a band at 0 dB would only cover the zero line.
        if (state.model.limitedValue(gainIndex(band)) == 0.0) continue;
        const Colour& colour = palette::Bands[static_cast<std::size_t>(band)];
        addCurve(cr, curves.band(band), left, axis);
        setColour(cr, colour, 0.6 * strength);
        cairo_set_line_width(cr, BandWidth * scale);
        cairo_stroke_preserve(cr);
        cairo_line_to(cr, plot.right(), axis.yOf(0.0));
        cairo_line_to(cr, plot.x, axis.yOf(0.0));
        setColour(cr, colour, 0.14 * strength);
        cairo_fill(cr);
    }
    addCurve(cr, curves.sum(), left, axis);
    setColour(cr, palette::Sum, strength);
    cairo_set_line_width(cr, SumWidth * scale);
    cairo_stroke(cr);
    cairo_restore(cr);

    // Draw the node with the focus last, so that it is in front.
    for (int band = 0; band < BandCount; ++band)
        if (state.focus != nodeTarget(band)) drawNode(cr, state, band, strength);
    if (state.focus.kind == TargetKind::Node) drawNode(cr, state, state.focus.index, strength);
}

void PlotPainter::drawNode(cairo_t* cr, const EditorState& state, int band, double strength) const {
    const double scale = state.geometry.layout.scale;
    const Point node = state.geometry.nodeOf(state.model, band);
    const bool isFocus = state.focus == nodeTarget(band);
    const bool isHover = state.hover == nodeTarget(band);
    const Colour& colour = palette::Bands[static_cast<std::size_t>(band)];
    if (isFocus || isHover) {
        cairo_save(cr);
        clipTo(cr, state.geometry.layout.plot, Corner * scale);
        drawBandwidth(cr, state, band, node, strength);
        cairo_restore(cr);
    }
    const auto disc = [&](double radius) {
        cairo_new_path(cr);
        cairo_arc(cr, node.x, node.y, radius * scale, 0.0, 2.0 * std::numbers::pi);
    };
    disc(RingRadius);
    setColour(cr, palette::Plot); // hides the curves, even below a dimmed node
    cairo_fill(cr);
    disc(NodeRadius);
    setColour(cr, colour, strength);
    cairo_fill(cr);
    if (isFocus || isHover) {
        disc(RingRadius - 0.75);
        const bool hasKeyboard = isFocus && state.hasKeyboard;
        setColour(cr, hasKeyboard ? palette::Focus : colour, isFocus ? 1.0 : 0.6);
        cairo_set_line_width(cr, 1.5 * scale);
        cairo_stroke(cr);
    }
    texts.draw(cr, Font::Badge, std::to_string(band + 1), node.x, node.y, Align::Centre, palette::Badge);
}

} // namespace eq
