#pragma once

#include "curve/drawing/TextPainter.h"
#include "curve/model/EditorState.h"
#include "curve/model/ResponseCurves.h"

#include <span>

namespace eq {

/// Draws the graph: the grid with its labels, the curves, and the nodes.
class PlotPainter {
public:
    explicit PlotPainter(const TextPainter& textPainter) noexcept : texts(textPainter) {}

    /// Draws the grid and its labels, which depend only on the layout and the range.
    void drawGrid(cairo_t* cr, const EditorGeometry& geometry) const;
    /// Draws the curves and the nodes, which depend on the values. They are dimmed if the effect is bypassed.
    void drawCurves(cairo_t* cr, const EditorState& state, const ResponseCurves& curves, bool isBypassed) const;

private:
    void drawFrequencies(cairo_t* cr, const EditorGeometry& geometry) const;
    void drawDecibels(cairo_t* cr, const EditorGeometry& geometry) const;
    void drawNode(cairo_t* cr, const EditorState& state, int band, double strength) const;

    const TextPainter& texts;
};

} // namespace eq
