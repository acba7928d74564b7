#include "lv2/editor/EditorLanguage.h"

#include "support/TextConversion.h"
#include "wedge/CLanguageStore.h"
#include "wedge/LanguageSelection.h"

namespace eq::lv2 {

namespace {

/// The module name for which the language files have a section. The extension has no meaning.
constexpr const char* ModuleName = "Parametric Equalizer.editor";

std::unique_ptr<CLanguageStore> readLanguage(const std::string& folder) {
    const std::string separator = folder.ends_with('/') ? "" : "/";
    try {
        return std::make_unique<CLanguageStore>(folder + separator + ModuleName, g_language_override);
    } catch (...) {
        return std::make_unique<CLanguageStore>();
    }
}

} // namespace

EditorLanguage::EditorLanguage(const std::string& bundleFolder) : store(readLanguage(bundleFolder)) {}

EditorLanguage::~EditorLanguage() = default;

std::string EditorLanguage::text(const char* key) const {
    const wchar_t* const found = store->Find(key);
    return found ? toNarrow(found, CP_UTF8).text : std::string();
}

} // namespace eq::lv2
