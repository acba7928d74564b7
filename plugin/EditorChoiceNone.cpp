#include "plugin/EditorChoice.h"

#include "platform/standin/StandardError.h"
#include "wedge/CLanguageStore.h"

namespace eq {

// Only builds the language store. Without an editor, the effect does not set the editor flag, and hosts show their own
// sliders with the effect's texts.
bool createEditor(AudioEffect& /*effect*/) {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { standin::writeToStandardError(caption, text); });
    static_cast<void>(CLanguageStore::Instance());
    return true;
}

} // namespace eq
