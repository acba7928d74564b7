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

/// The wedge's data about the pages of the process.
struct PropertyPageState {
    GuardedMap<HPROPSHEETPAGE, CountedBlockRef> PageRecords; ///< the wedge's copies of the callers' records
    GuardedMap<const void*, CountedBlockRef> PageTitles;     ///< titles and captions that were loaded for a string id
    /// The system may call a page's callback after the sheet has ended, so a thunk stays until the library is unloaded.
    GuardedMap<PageThunk*, CountedThunkRef> PageThunks;
    GuardedMap<HWND, DLGPROC> PageProcs; ///< the callers' procedures of the pages that have a window
};

inline bool closePage(HPROPSHEETPAGE page) noexcept {
    return systems::DestroyPropertySheetPage(page) != FALSE;
}
using SystemPage = UniqueHandle<HPROPSHEETPAGE, closePage>;

/// Creates a system page whose dialog is the rewritten template. The caller's record stays unchanged, and the caller's
/// functions receive the caller's own values. `Sheets` is one of the forms of PropertySheetForms.h. Returns an empty
/// owner if the system creates no page. Throws std::bad_alloc and the exceptions of the language store.
template <typename Sheets>
SystemPage createPage(const typename Sheets::Page* page);

/// Frees the record and the title that `createPage` keeps for a page. Ignores a page that `createPage` did not create.
void ReleasePageRecord(HPROPSHEETPAGE page) noexcept;

/// Returns the string for a title or caption that is a string id of `module`. The string stays valid until
/// `releaseTitle`. Returns `title` itself if it is a text or if no string has the id.
template <typename Sheets>
typename Sheets::Text loadTitle(HINSTANCE module, typename Sheets::Text title);

/// Frees a string that `loadTitle` loaded. Ignores any other address.
void releaseTitle(const void* title) noexcept;

} // namespace eq
