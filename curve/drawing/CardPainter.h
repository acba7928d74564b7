#pragma once

#include "curve/drawing/TextPainter.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Draws the read-outs: a card for each band, and one for the volume.
class CardPainter {
public:
    CardPainter(const TextPainter& textPainter, const EditorTexts& editorTexts) noexcept
        : painter(textPainter), texts(editorTexts) {}

    /// Returns the width that each kind of read-out needs: the width of its widest text, plus a padding.
    [[nodiscard]] FieldNeeds fieldNeeds(double scale) const;
    /// Draws a card. `card` is the number of a band, 0 to 3, or EditorLayout::VolumeCard.
    void draw(cairo_t* cr, const EditorState& state, int card) const;

private:
    void drawField(cairo_t* cr, const EditorState& state, int parameter, Align align) const;
    void drawEntry(cairo_t* cr, const EditorState& state, const Rect& box) const;

    const TextPainter& painter;
    const EditorTexts& texts;
};

} // namespace eq
