#pragma once

#include "curve/drawing/CardPainter.h"
#include "curve/drawing/PlotPainter.h"
#include "curve/drawing/VolumePainter.h"

#include <optional>
#include <vector>

namespace eq {

/// Draws the picture of the editor in memory. `paint` compares the new state with the state in the picture, and draws
/// only the parts that differ.
class EditorPainter {
public:
    EditorPainter(const EditorTexts& texts, double designRate, double scale);

    /// Arranges the editor for a window of this size, and begins a new picture. Returns false if there is no memory for
    /// the picture.
    [[nodiscard]] bool resize(EditorState& state, int width, int height);
    /// Draws the changes, and returns the rectangles in which the picture has changed.
    std::vector<Rect> paint(EditorState& state);

    /// Returns the pixels of the picture, from the top row to the bottom row, with 32 bits per pixel. Returns null
    /// before `resize`.
    [[nodiscard]] const unsigned char* pixels() const noexcept;
    [[nodiscard]] int bytesPerRow() const noexcept;
    [[nodiscard]] int width() const noexcept;
    [[nodiscard]] int height() const noexcept;
    [[nodiscard]] cairo_surface_t* surface() const noexcept { return picture.get(); }

private:
    /// The values of a state on which the picture depends.
    struct Shown {
        NormalisedParameters values{};
        EditorTarget focus;
        EditorTarget hover;
        bool hasKeyboard = false;
        bool isBypassed = false;
        std::optional<TextEntry> entry;
        double range = 0.0;
    };

    [[nodiscard]] Shown shownOf(const EditorState& state) const;
    [[nodiscard]] bool graphDiffers(const Shown& now) const;
    [[nodiscard]] bool targetDiffers(const Shown& now, EditorTarget target) const;
    [[nodiscard]] bool cardDiffers(const Shown& now, int card) const;
    void drawGraph(cairo_t* cr, const EditorState& state, const Shown& now);

    double scale;
    TextPainter textPainter;
    PlotPainter plotPainter{textPainter};
    VolumePainter volumePainter{textPainter};
    CardPainter cardPainter;
    ResponseCurves curves;
    FieldNeeds fieldNeeds;
    Surface picture;
    Surface grid; ///< the graph without curves, drawn for `gridRange`
    double gridRange = 0.0;
    std::optional<Shown> shown;
};

} // namespace eq
