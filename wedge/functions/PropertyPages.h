#pragma once

#include "platform/UniqueHandle.h"
#include "platform/win32.h"
#include "wedge/resources/CountedBlock.h"
#include "wedge/resources/GuardedMap.h"
#include "wedge/resources/SystemFunctions.h"

namespace eq {

/// The caller's values of the page fields that the wedge replaces.
struct PageThunk {
    DLGPROC pfnDlgProc;
    LPARAM lParam;
    LPFNPSPCALLBACKW pfnCallback;
};
using CountedThunkRef = CountedRef<PageThunk>;

/// The pages of the process.
struct PropertyPageState {
    GuardedMap<HPROPSHEETPAGE, CountedBlockRef> PageRecords; ///< the wedge's copies
    GuardedMap<const void*, CountedBlockRef> PageTitles;     ///< strings that were loaded for an id
    /// A page may be called back after its sheet is gone, so its thunk stays until the library is unloaded.
    GuardedMap<PageThunk*, CountedThunkRef> PageThunks;
    GuardedMap<HWND, DLGPROC> PageProcs; ///< the callers' procedures of the pages that are shown
};

inline bool closePage(HPROPSHEETPAGE page) noexcept {
    return systems::DestroyPropertySheetPage(page) != FALSE;
}
using SystemPage = UniqueHandle<HPROPSHEETPAGE, closePage>;

/// Creates a page of the system whose dialog is the rewritten template. The caller's record is not written to, and its
/// procedures see their own values. `Sheets` is one of the forms of PropertySheetForms.h. Throws std::bad_alloc, and
/// the exceptions of the language store.
template <typename Sheets>
SystemPage createPage(const typename Sheets::Page* page);

/// Frees what `createPage` keeps for a page. A page that it did not make is ignored.
void ReleasePageRecord(HPROPSHEETPAGE page) noexcept;

/// A title or caption in place of its string id, loaded from the module's strings and kept until `releaseTitle`. A
/// text, and an id that no string has, come back as they are.
template <typename Sheets>
typename Sheets::Text loadTitle(HINSTANCE module, typename Sheets::Text title);

/// Ignores an address that `loadTitle` did not give.
void releaseTitle(const void* title) noexcept;

} // namespace eq
