#include "plugin/CurveHostEditor.h"

#include "curve/model/EditorSize.h"
#include "engine/FilterDesign.h"
#include "plugin/base/AudioEffect.h"
#include "support/LanguageText.h"
#include "support/TextConversion.h"
#include "wedge/OwnModule.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include <dlfcn.h>

namespace eq {

CurveHostEditor::CurveHostEditor(AudioEffect* owner, std::string moduleFile)
    : AEffEditor(owner), path(std::move(moduleFile)) {
    effect->setEditor(this);
}

CurveHostEditor::~CurveHostEditor() {
    isBusy = false;
    CurveHostEditor::close();
}

const CurveModule* CurveHostEditor::module() {
    if (loaded) return loaded;
    // The module stays in the process, because the graphics libraries cannot be unloaded.
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library) return nullptr;
    const auto entry = reinterpret_cast<CurveModuleProc>(dlsym(library, CurveModuleEntry));
    const CurveModule* const found = entry ? entry() : nullptr;
    if (found && found->version == CurveModule::Version) loaded = found;
    return loaded;
}

int32 CurveHostEditor::getRect(ERect** answer) {
    int width = DefaultEditorWidth; // remains unchanged if there is no display
    int height = DefaultEditorHeight;
    if (module()) loaded->defaultSize(width, height);
    rect.bottom = static_cast<std::int16_t>(height);
    rect.right = static_cast<std::int16_t>(width);
    *answer = &rect;
    return 1;
}

int32 CurveHostEditor::open(void* window) {
    if (isBusy || !module()) return 0;
    close();
    systemWindow = window;
    curve = loaded->open(*this, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(window)),
                         FilterDesign::DefaultRate);
    return curve ? 1 : 0;
}

void CurveHostEditor::close() {
    isCloseDue = isBusy;
    if (isBusy || !curve) return;
    isBusy = true; // a drag that ends now causes a call of this object
    loaded->close(std::exchange(curve, nullptr));
    isBusy = false;
    isCloseDue = false;
}

void CurveHostEditor::idle() {
    if (isBusy || !curve) return;
    updateFlag = 0; // the curve compares all values at each call
    isBusy = true;
    loaded->idle(*curve);
    isBusy = false;
    if (isCloseDue) close();
}

float CurveHostEditor::get(int index) {
    return effect->getParameter(index);
}

void CurveHostEditor::set(int index, float p) {
    effect->setParameterAutomated(index, p);
}

std::string CurveHostEditor::text(const char* key) {
    LanguageText translation(key, ownModule());
    const wchar_t* const wide = translation.wide();
    if (!wide) return {};
    std::string text = toNarrow(wide, CP_UTF8).text;
    return text == std::string_view(key) ? std::string() : text; // without a translation the store returns the key
}

} // namespace eq
