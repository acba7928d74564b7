#include "plugin/EditorChoice.h"

#include "editor/EqualizerEditor.h"

#include <new>

namespace eq {

bool createEditor(AudioEffect& effect) {
    // The editor binds itself to the effect, which owns it from then on.
    return new (std::nothrow) EqualizerEditor(&effect) != nullptr; // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}

} // namespace eq
