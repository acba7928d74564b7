#include "wedge/functions/WedgeState.h"

#include "wedge/CLanguageStore.h"
#include "wedge/functions/WedgeEntryPoints.h"

namespace eq {

WedgeState::WedgeState() noexcept {
    CLanguageStore::ShowMessagesWith(
        [](const wchar_t* text, const wchar_t* caption) { wedge::MessageBoxW(nullptr, text, caption, MB_ICONERROR); });
}

// The state is built at its first use. The constructor of a global object in another file may be the first use; if not,
// `builtAtLoad` is.
WedgeState& wedgeState() noexcept {
    static WedgeState state;
    return state;
}

namespace {

[[maybe_unused]] const WedgeState& builtAtLoad = wedgeState();

} // namespace

} // namespace eq
