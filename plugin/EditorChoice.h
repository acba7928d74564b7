#pragma once

#include "plugin/base/AudioEffect.h"

namespace eq {

/// Creates the editor of the platform for an effect. Each product links one definition: EditorChoiceDialog.cpp
/// (Windows) or EditorChoiceCurve.cpp (Linux).
///
/// Builds the language store if it is not yet built. Returns false when there is no memory for the editor. Throws the
/// language store's exceptions for a broken language file.
[[nodiscard]] bool createEditor(AudioEffect& effect);

} // namespace eq
