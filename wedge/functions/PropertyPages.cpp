#include "wedge/functions/PropertyPages.h"

#include "wedge/functions/PropertySheetForms.h"
#include "wedge/functions/WedgeState.h"
#include "wedge/resources/ResourceFormats.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

namespace eq {

namespace {

// The fields that this file uses have the same offsets in PROPSHEETPAGEA and PROPSHEETPAGEW.
using Page = PROPSHEETPAGEW;

PropertyPageState& state() noexcept {
    return wedgeState().pages;
}

void giveToCaller(Page& page, const PageThunk& thunk) noexcept {
    page.pfnDlgProc = thunk.pfnDlgProc;
    page.lParam = thunk.lParam;
    page.pfnCallback = thunk.pfnCallback;
}

/// Returns the thunk of a page, or null if the page has the caller's own values.
PageThunk* thunkOf(const Page& page) {
    auto* const address = reinterpret_cast<PageThunk*>(page.lParam);
    return state().PageThunks.find(address) ? address : nullptr;
}

/// Selects the page that a wizard page has named by resource id. The system does not know the ids of in-memory pages.
/// Therefore the answer becomes -1, which keeps the sheet on the present page, and a posted message then selects the
/// named page.
void goToPageOfId(HWND page) noexcept {
    const LONG_PTR answer = GetWindowLongPtrW(page, DWLP_MSGRESULT);
    if (answer <= 0) return;
    SetWindowLongPtrW(page, DWLP_MSGRESULT, -1);
    PostMessageW(GetParent(page), PSM_SETCURSELID, 0, answer);
}

void enterProcedure(HWND page, DLGPROC procedure) noexcept {
    try {
        state().PageProcs.put(page, procedure);
    } catch (const std::bad_alloc&) {
        // An exception must not pass through the system's code. Without memory, the page has no procedure.
    }
}

INT_PTR CALLBACK PageDialogProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (msg == WM_INITDIALOG) {
        auto& page = *reinterpret_cast<Page*>(lParam);
        if (const PageThunk* const thunk = thunkOf(page)) {
            enterProcedure(hwnd, thunk->pfnDlgProc);
            giveToCaller(page, *thunk);
        }
    }
    const DLGPROC callers = state().PageProcs.find(hwnd).value_or(nullptr);
    const INT_PTR result = callers ? callers(hwnd, msg, wParam, lParam) : 0;
    if (msg == WM_NOTIFY) {
        const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
        if (code == static_cast<UINT>(PSN_WIZNEXT) || code == static_cast<UINT>(PSN_WIZBACK)) goToPageOfId(hwnd);
    }
    if (msg == WM_NCDESTROY) state().PageProcs.take(hwnd);
    return result;
}

UINT CALLBACK PageCallback(HWND hwnd, UINT msg, Page* page) {
    PageThunk* const thunk = page ? thunkOf(*page) : nullptr;
    if (!thunk) return 1;
    const Page ours = *page;
    giveToCaller(*page, *thunk);
    const UINT result = thunk->pfnCallback ? thunk->pfnCallback(hwnd, msg, page) : 1;
    page->pfnDlgProc = ours.pfnDlgProc;
    page->lParam = ours.lParam;
    page->pfnCallback = ours.pfnCallback;
    return result;
}

/// Returns a counted reference that owns the block. Throws std::bad_alloc; the block is then freed.
CountedBlockRef shared(std::unique_ptr<std::byte[]> block) {
    CountedBlockRef ref(wedgeState().blocks, block.get());
    static_cast<void>(block.release());
    return ref;
}

/// Moves the caller's values of the page's fields into a new thunk, and sets these fields to the wedge's values.
/// Returns the thunk, which `PageThunks` owns.
template <typename AnyPage>
PageThunk* installThunk(AnyPage& page) {
    auto thunk = std::make_unique<PageThunk>(
        PageThunk{page.pfnDlgProc, page.lParam, reinterpret_cast<LPFNPSPCALLBACKW>(page.pfnCallback)});
    PageThunk* const address = thunk.get();
    CountedThunkRef ref(wedgeState().thunks, address);
    static_cast<void>(thunk.release());
    state().PageThunks.put(address, std::move(ref));

    page.pfnDlgProc = PageDialogProc;
    page.lParam = reinterpret_cast<LPARAM>(address);
    page.pfnCallback = reinterpret_cast<decltype(page.pfnCallback)>(PageCallback);
    return address;
}

template <typename Sheets>
void useRewrittenTemplate(typename Sheets::Page& page) {
    if ((page.dwFlags & PSP_DLGINDIRECT) != 0) return;
    const void* const dialog = Sheets::LoadLockedResource(page.hInstance, ResourceType::Dialog, page.pszTemplate);
    if (!dialog) return; // the system then searches for the template and reports the failure
    page.dwFlags |= PSP_DLGINDIRECT;
    page.pResource = static_cast<LPCDLGTEMPLATE>(dialog);
}

} // namespace

template <typename Sheets>
typename Sheets::Text loadTitle(HINSTANCE module, typename Sheets::Text title) {
    if (!isStringId(title)) return title;
    const auto text = Sheets::LoadText(module, static_cast<UINT>(reinterpret_cast<std::uintptr_t>(title)));
    if (!text) return title;
    const std::basic_string_view view(text.get());
    const std::size_t size = (view.size() + 1) * sizeof text[0];
    auto block = std::make_unique<std::byte[]>(size);
    std::memcpy(block.get(), text.get(), size);
    const void* const address = block.get();
    state().PageTitles.put(address, shared(std::move(block)));
    return static_cast<typename Sheets::Text>(address);
}

void releaseTitle(const void* title) noexcept {
    state().PageTitles.take(title);
}

template <typename Sheets>
SystemPage createPage(const typename Sheets::Page* given) {
    if (!given) return SystemPage(Sheets::CreatePage(nullptr));
    SizedCopy copy(*given);
    auto& page = *copy;
    CountedBlockRef record = shared(copy.release());

    useRewrittenTemplate<Sheets>(page);
    if ((page.dwFlags & PSP_USETITLE) != 0) page.pszTitle = loadTitle<Sheets>(page.hInstance, page.pszTitle);
    PageThunk* const thunk = installThunk(page);
    SystemPage created(Sheets::CreatePage(&page));
    if (created) {
        state().PageRecords.put(created.get(), std::move(record));
    } else {
        releaseTitle(page.pszTitle);
        state().PageThunks.take(thunk);
    }
    return created;
}

void ReleasePageRecord(HPROPSHEETPAGE page) noexcept {
    // The title is freed after `take` has released the lock of the records.
    if (const auto record = state().PageRecords.take(page))
        releaseTitle(reinterpret_cast<const Page*>(record->get())->pszTitle);
}

template LPCSTR loadTitle<NarrowSheets>(HINSTANCE module, LPCSTR title);
template LPCWSTR loadTitle<WideSheets>(HINSTANCE module, LPCWSTR title);
template SystemPage createPage<NarrowSheets>(const PROPSHEETPAGEA* page);
template SystemPage createPage<WideSheets>(const PROPSHEETPAGEW* page);

} // namespace eq
