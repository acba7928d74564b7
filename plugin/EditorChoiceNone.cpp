#include "plugin/EditorChoice.h"

#include "wedge/CLanguageStore.h"

// Without an editor the effect does not set the editor flag, and hosts show their own sliders with the effect's texts.
bool createEditor(AudioEffect& /*effect*/) {
    static_cast<void>(CLanguageStore::Instance());
    return true;
}
