#include "plugin/ParametricEqualizer.h"
#include "plugin/base/ExceptionBarrier.h"

// The library's only export. The linker exports this function as "main". C++ does not allow a function of this type to
// have that name.
extern "C" AEffect* pluginMain(audioMasterCallback audioMaster);

using namespace eq;

/// Returns a new effect, which lives until the host sends effClose. Returns null if the host reports version 0, if the
/// effect or its editor cannot be created, or if a language file is broken.
AEffect* pluginMain(audioMasterCallback audioMaster) {
    return withExceptionBarrier([audioMaster]() -> AEffect* {
        if (audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
        auto effect = std::make_unique<ParametricEqualizer>(audioMaster);
        if (editorCreationFailed) return nullptr;
        return effect.release()->getAeffect();
    });
}
