#pragma once

#include "curve/model/EditorInput.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Converts the pointer's events into changes of the model.
///
/// A drag adds the pointer's movements to a separate position, which may leave the range. The value then stays at its
/// limit until the position is in the range again. Shift reduces each movement to a fifth.
class PointerControl {
public:
    explicit PointerControl(EditorState& editorState) noexcept : state(editorState) {}

    /// Handle the first button of the mouse.
    void press(const PointerInput& input);
    void release();
    void move(const PointerInput& input);
    void leave();
    /// Handles a turn of the wheel, upwards by `steps`. Changes the Q of the node, the volume, or the read-out below
    /// the pointer.
    void wheel(const PointerInput& input, int steps);

private:
    enum class Drag { None, Node, Q, Volume };

    void pressTarget(const PointerInput& input, EditorTarget target);
    void reset(EditorTarget target);
    void startDrag(Drag newDrag, const PointerInput& input);
    void drag(const PointerInput& input);

    EditorState& state;
    Drag present = Drag::None;
    bool hasMoved = false; ///< the pointer has moved too far for a click
    PointerInput pressed;
    EditorTarget pressedTarget;
    PointerInput last;
    Point place;          ///< the position of the dragged node or thumb, in pixels
    double logarithm = 0; ///< logarithm of the dragged Q
};

} // namespace eq
