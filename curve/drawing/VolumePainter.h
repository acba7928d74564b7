#pragma once

#include "curve/drawing/TextPainter.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Draws the column at the right: the slider of the volume, and the button of the bypass.
class VolumePainter {
public:
    explicit VolumePainter(const TextPainter& textPainter) noexcept : texts(textPainter) {}

    void drawSlider(cairo_t* cr, const EditorState& state, bool isBypassed) const;
    void drawBypass(cairo_t* cr, const EditorState& state, bool isBypassed) const;

private:
    const TextPainter& texts;
};

} // namespace eq
