#include "wedge/functions/WedgeState.h"

#include "wedge/CLanguageStore.h"
#include "wedge/functions/WedgeEntryPoints.h"

namespace {

WedgeState state;

} // namespace

WedgeState::WedgeState() noexcept {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { wedge::MessageBoxW(nullptr, text, caption, MB_ICONERROR); });
}

WedgeState& wedgeState() noexcept {
    return state;
}
