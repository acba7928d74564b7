#include "plugin/EditorChoice.h"

#include "editor/EqualizerEditor.h"

#include <new>

namespace eq {

bool createEditor(AudioEffect& effect) {
    // The editor registers itself with the effect, which then owns the editor.
    return new (std::nothrow) EqualizerEditor(&effect) != nullptr; // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}

} // namespace eq
