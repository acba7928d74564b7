#include "plugin/ParametricEqualizer.h"
#include "plugin/base/ExceptionBarrier.h"

// The library's one export. It is exported as "main", a name that the language gives to no function of this form.
extern "C" AEffect* pluginMain(audioMasterCallback audioMaster);

using namespace eq;

/// Makes an effect for a host that knows its own version. Gives null when there is none to be had.
AEffect* pluginMain(audioMasterCallback audioMaster) {
    return withExceptionBarrier([audioMaster]() -> AEffect* {
        if (audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
        auto effect = std::make_unique<ParametricEqualizer>(audioMaster);
        if (editorCreationFailed) return nullptr;
        return effect.release()->getAeffect();
    });
}
