#pragma once

#include "curve/model/EditorInput.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Turns the pointer's events into changes of the model.
///
/// A drag adds the pointer's movements to a place of its own, which may leave the range: the value follows again where
/// the pointer comes back. Shift makes each movement a fifth as large.
class PointerControl {
public:
    explicit PointerControl(EditorState& editorState) noexcept : state(editorState) {}

    /// The first button.
    void press(const PointerInput& input);
    void release();
    void move(const PointerInput& input);
    void leave();
    /// A turn of the wheel, upwards by `steps`: the Q of the node below the pointer, the volume, or the read-out.
    void wheel(const PointerInput& input, int steps);

private:
    enum class Drag { None, Node, Q, Volume };

    void pressTarget(const PointerInput& input, EditorTarget target);
    void reset(EditorTarget target);
    void startDrag(Drag newDrag, const PointerInput& input);
    void drag(const PointerInput& input);

    EditorState& state;
    Drag present = Drag::None;
    bool hasMoved = false; ///< beyond the trembling of a click
    PointerInput pressed;
    EditorTarget pressedTarget;
    PointerInput last;
    Point place;          ///< the dragged node's or thumb's, in pixels
    double logarithm = 0; ///< of the dragged Q
};

} // namespace eq
