#pragma once

#include "plugin/base/AudioEffect.h"

namespace eq {

/// Creates the platform's editor for an effect, which owns the editor. Each product links one definition:
/// EditorChoiceDialog.cpp (Windows) or EditorChoiceCurve.cpp (Linux).
///
/// Also builds the language store, if no call has built it before. Returns false if there is no memory for the editor.
/// Throws the exceptions of the language store for a broken language file.
[[nodiscard]] bool createEditor(AudioEffect& effect);

} // namespace eq
