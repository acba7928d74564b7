#pragma once

#include "curve/model/EditorGeometry.h"
#include "curve/model/EditorModel.h"
#include "curve/model/EditorTexts.h"
#include "curve/model/TextEntry.h"

#include <optional>

namespace eq {

/// The state of the editor, on which pointer and keyboard act: the model, the layout, the focus, and the read-out that
/// is edited.
struct EditorState {
    EditorState(EditorModel& editorModel, const EditorTexts& editorTexts) : model(editorModel), texts(editorTexts) {}

    EditorModel& model;
    const EditorTexts& texts;
    EditorGeometry geometry;
    EditorTarget focus = nodeTarget(0); ///< a node, the volume or the bypass
    EditorTarget hover;
    bool hasKeyboard = false; ///< key input arrives at the editor's window
    bool isDragging = false;
    std::optional<TextEntry> entry;

    /// Opens an entry to edit the read-out of a parameter, with its text selected.
    void openEntry(int parameter);
    /// Sets the parameter to the value in the entry, and closes the entry. Returns false if the text is not a valid
    /// value. The entry then stays open and is marked as invalid. Returns true if no entry is open.
    bool takeEntry();
    void closeEntry() { entry.reset(); }
};

/// Returns the value that is `steps` steps of the wheel or of a key above `value`. A step is a semitone for a
/// frequency, and 0.5 in the unit of any other value. A fine step is a fifth of a step. The result may be outside the
/// range.
[[nodiscard]] double stepped(ParameterKind kind, double value, double steps, bool isFine) noexcept;

/// The factor for movements and steps while Shift is held.
inline constexpr double FinePart = 0.2;

} // namespace eq
