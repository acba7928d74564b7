#pragma once

#include "curve/model/EditorInput.h"
#include "curve/model/EditorState.h"

namespace eq {

/// Converts keys into changes of the model, of the focus, and of the read-out that is edited.
class KeyControl {
public:
    explicit KeyControl(EditorState& editorState) noexcept : state(editorState) {}

    /// Handles a key. Returns false if the editor does not use the key, which then belongs to the host.
    bool press(const KeyInput& input);

private:
    bool pressInEntry(const KeyInput& input);
    bool pressOnNode(const KeyInput& input);
    bool pressOnVolume(const KeyInput& input);
    void step(int parameter, int steps, const KeyInput& input);

    EditorState& state;
};

} // namespace eq
