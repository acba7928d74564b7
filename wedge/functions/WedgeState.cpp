#include "wedge/functions/WedgeState.h"

#include "wedge/CLanguageStore.h"
#include "wedge/functions/WedgeEntryPoints.h"

namespace eq {

WedgeState::WedgeState() noexcept {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { wedge::MessageBoxW(nullptr, text, caption, MB_ICONERROR); });
}

// The first call builds the state. The constructor of a global object in another file may make the first call.
// Otherwise `builtAtLoad` makes it.
WedgeState& wedgeState() noexcept {
    static WedgeState state;
    return state;
}

namespace {

[[maybe_unused]] const WedgeState& builtAtLoad = wedgeState();

} // namespace

} // namespace eq
