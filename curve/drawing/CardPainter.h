#pragma once

#include "curve/drawing/TextPainter.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Draws the read-outs: a card for each band, and one for the volume.
class CardPainter {
public:
    CardPainter(const TextPainter& textPainter, const EditorTexts& editorTexts) noexcept
        : painter(textPainter), texts(editorTexts) {}

    /// Returns the widths of the widest texts, with the space between read-outs.
    [[nodiscard]] FieldNeeds fieldNeeds(double scale) const;
    /// `card` is 0 to 3, or EditorLayout::VolumeCard.
    void draw(cairo_t* cr, const EditorState& state, int card) const;

private:
    void drawField(cairo_t* cr, const EditorState& state, int parameter, Align align) const;
    void drawEntry(cairo_t* cr, const EditorState& state, const Rect& box) const;

    const TextPainter& painter;
    const EditorTexts& texts;
};

} // namespace eq
