#pragma once

#include "curve/model/EditorGeometry.h"
#include "curve/model/EditorModel.h"
#include "curve/model/EditorTexts.h"
#include "curve/model/TextEntry.h"

#include <optional>

namespace eq {

/// What the editor shows in addition to the values, and what pointer and keyboard work on.
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

    /// Starts to edit a read-out, with its text selected.
    void openEntry(int parameter);
    /// Sets the parameter to the entry's number and closes the entry. Returns false if the text is no number: the entry
    /// then stays, and is marked.
    bool takeEntry();
    void closeEntry() { entry.reset(); }
};

/// Returns the value that is `steps` steps of the wheel or of a key above `value`: semitones of a frequency, halves of
/// the others. A fine step is a fifth of that. The result may be outside the range.
[[nodiscard]] double stepped(ParameterKind kind, double value, double steps, bool isFine) noexcept;

/// The part of a movement that counts while Shift is held.
inline constexpr double FinePart = 0.2;

} // namespace eq
