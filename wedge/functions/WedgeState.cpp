#include "wedge/functions/WedgeState.h"

#include "wedge/CLanguageStore.h"
#include "wedge/functions/WedgeEntryPoints.h"

namespace eq {

WedgeState::WedgeState() noexcept {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { wedge::MessageBoxW(nullptr, text, caption, MB_ICONERROR); });
}

// Built by its first use, which may come from the constructor of another file's object, or else while the library
// loads.
WedgeState& wedgeState() noexcept {
    static WedgeState state;
    return state;
}

namespace {

[[maybe_unused]] const WedgeState& builtAtLoad = wedgeState();

} // namespace

} // namespace eq
