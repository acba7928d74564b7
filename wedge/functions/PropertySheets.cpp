#include "wedge/functions/PropertySheets.h"

#include "platform/CriticalSection.h"
#include "wedge/CLanguageStore.h"
#include "wedge/functions/PropertySheetForms.h"
#include "wedge/functions/WedgeState.h"

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace eq {

SheetRecord::~SheetRecord() {
    for (SheetPage& page : pages) {
        page.owner.reset();
        ReleasePageRecord(page.handle);
    }
    releaseTitle(caption);
}

namespace {

SheetContext& context() noexcept {
    return wedgeState().sheets;
}

SheetRecord* recordOf(HWND sheet) noexcept {
    return reinterpret_cast<SheetRecord*>(GetWindowLongPtrW(sheet, GWLP_USERDATA));
}

const SheetPage* findTemplate(const SheetRecord& record, LPARAM id) noexcept {
    const auto found = std::find_if(record.pages.begin(), record.pages.end(), [id](const SheetPage& page) {
        return page.templateName == (static_cast<ULONG_PTR>(id) & 0xFFFF);
    });
    return found == record.pages.end() ? nullptr : &*found;
}

LRESULT templateOfHandle(const SheetRecord& record, LRESULT handle) noexcept {
    const auto found = std::find_if(record.pages.begin(), record.pages.end(), [handle](const SheetPage& page) {
        return reinterpret_cast<LRESULT>(page.handle) == handle;
    });
    return found == record.pages.end() || handle == 0 ? 0 : static_cast<LRESULT>(found->templateName);
}

LRESULT CALLBACK SheetWindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    SheetRecord* const record = recordOf(hwnd);
    if (!record) return DefWindowProcW(hwnd, msg, wParam, lParam);
    const WNDPROC previous = record->previousProc;
    const auto forward = [=](WPARAM w, LPARAM l) { return CallWindowProcA(previous, hwnd, msg, w, l); };
    switch (msg) {
    case PSM_SETCURSELID: {
        const SheetPage* const page = findTemplate(*record, lParam);
        if (!page) return forward(0, lParam);
        return SendMessageW(hwnd, PSM_SETCURSEL, static_cast<WPARAM>(lParam), reinterpret_cast<LPARAM>(page->handle));
    }
    case PSM_IDTOINDEX: {
        if (!record->hasOwnPages) return forward(0, lParam);
        const SheetPage* const page = findTemplate(*record, lParam);
        return page ? SendMessageW(hwnd, PSM_PAGETOINDEX, 0, reinterpret_cast<LPARAM>(page->handle)) : 0;
    }
    case PSM_INDEXTOID:
        if (!record->hasOwnPages) return forward(wParam, lParam);
        return templateOfHandle(*record, SendMessageW(hwnd, PSM_INDEXTOPAGE, wParam, 0));
    case WM_NCDESTROY:
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
        delete record;
        return forward(wParam, lParam);
    default:
        return forward(wParam, lParam);
    }
}

struct Button {
    int id;
    const char* key;
};
constexpr std::array Buttons = {
    Button{1, "{MSGBOX_OK}"},
    Button{2, "{MSGBOX_CANCEL}"},
    Button{9, "{MSGBOX_HELP}"},
    Button{0x3021, "{PRSHT_APPLY_NOW}"},
    Button{0x3023, "{PRSHT_WIZBACK}"},
    Button{0x3024, "{PRSHT_WIZNEXT}"},
    Button{0x3025, "{PRSHT_WIZFINISH}"},
};

/// Sets the texts of the sheet's buttons. A button becomes empty if the store lacks its key.
void setButtonTexts(HWND sheet) {
    for (const Button& button : Buttons) {
        if (const HWND control = GetDlgItem(sheet, button.id))
            SetWindowTextA(control, GetLanguageString(button.key).c_str());
    }
}

/// Passes ownership of the record to the sheet's window, and replaces the window's procedure and button texts.
void adoptWindow(HWND sheet, std::unique_ptr<SheetRecord> opened) noexcept {
    SheetRecord* const record = opened.release();
    SetWindowLongPtrW(sheet, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    const auto procedure = reinterpret_cast<LONG_PTR>(SheetWindowProc);
    const LONG_PTR previous = record->isWide ? SetWindowLongPtrW(sheet, GWLP_WNDPROC, procedure)
                                             : SetWindowLongPtrA(sheet, GWLP_WNDPROC, procedure);
    record->previousProc = reinterpret_cast<WNDPROC>(previous);
    try {
        setButtonTexts(sheet);
    } catch (const std::exception&) {
        // An exception must not pass through the system's code. The remaining buttons keep the system's texts.
    }
}

/// Returns the user's callback of the sheet with this window. For a window without a record, returns the callback of
/// the sheet that this thread is opening, or null.
PFNPROPSHEETCALLBACK userCallbackOf(HWND sheet) {
    if (const SheetRecord* const record = sheet ? recordOf(sheet) : nullptr) return record->userCallback;
    const CriticalSectionEntry entry(context().lock);
    return context().opening ? context().opening->userCallback : nullptr;
}

int CALLBACK SheetCallback(HWND hwnd, UINT msg, LPARAM lParam) {
    if (msg == PSCB_INITIALIZED) {
        const CriticalSectionEntry entry(context().lock);
        if (context().opening) adoptWindow(hwnd, std::move(context().opening));
    }
    const PFNPROPSHEETCALLBACK callback = userCallbackOf(hwnd);
    return callback ? callback(hwnd, msg, lParam) : 0;
}

/// Creates a page from each of the caller's records, and replaces the records in the header by the handles of the
/// pages. The `dwSize` of a record is the distance to the next record.
template <typename Sheets>
void createPages(SheetRecord& record, typename Sheets::Header& header) {
    if ((header.dwFlags & PSH_PROPSHEETPAGE) == 0) return;
    record.hasOwnPages = true;
    record.pages.reserve(header.nPages);
    record.handles.reserve(header.nPages);
    const auto* place = reinterpret_cast<const std::byte*>(header.ppsp);
    for (UINT i = 0; i < header.nPages; ++i) {
        const auto& given = *reinterpret_cast<const typename Sheets::Page*>(place);
        const auto templateName = reinterpret_cast<ULONG_PTR>(SizedCopy(given)->pszTemplate);
        SystemPage page = createPage<Sheets>(&given);
        record.handles.push_back(page.get());
        record.pages.push_back({templateName, page.get(), std::move(page)});
        place += given.dwSize;
    }
    header.dwFlags &= ~static_cast<DWORD>(PSH_PROPSHEETPAGE);
    header.phpage = record.handles.data();
}

/// Replaces the resource id of the start page by the page's index, because in-memory pages have no ids.
template <typename Header>
void nameStartPageByIndex(const SheetRecord& record, Header& header) noexcept {
    if ((header.dwFlags & PSH_USEPSTARTPAGE) == 0 || !isStringId(header.pStartPage)) return;
    const SheetPage* const page = findTemplate(record, reinterpret_cast<LPARAM>(header.pStartPage));
    if (!page) return;
    header.dwFlags &= ~static_cast<DWORD>(PSH_USEPSTARTPAGE);
    header.nStartPage = static_cast<UINT>(page - record.pages.data());
}

template <typename Sheets>
std::unique_ptr<SheetRecord> makeRecord(const typename Sheets::Header& given) {
    auto record = std::make_unique<SheetRecord>();
    record->isWide = Sheets::IsWide;
    SizedCopy copy(given);
    auto& header = *copy;
    record->headerCopy = copy.release();
    createPages<Sheets>(*record, header);
    nameStartPageByIndex(*record, header);
    if (isStringId(header.pszCaption)) {
        header.pszCaption = loadTitle<Sheets>(header.hInstance, header.pszCaption);
        record->caption = header.pszCaption;
    }
    record->userCallback = (header.dwFlags & PSH_USECALLBACK) != 0 ? header.pfnCallback : nullptr;
    header.dwFlags |= PSH_USECALLBACK;
    header.pfnCallback = SheetCallback;
    return record;
}

} // namespace

template <typename Sheets>
INT_PTR openSheet(const typename Sheets::Header* given) {
    const CriticalSectionEntry entry(context().lock);
    if (!given) return Sheets::OpenSheet(nullptr);
    auto outer = std::exchange(context().opening, makeRecord<Sheets>(*given));
    for (SheetPage& page : context().opening->pages) page.owner.release();
    const auto* const header = reinterpret_cast<const typename Sheets::Header*>(context().opening->headerCopy.get());
    const INT_PTR result = Sheets::OpenSheet(header);
    // If the system refused the sheet before the sheet had a window, `opening` still owns the record. This assignment
    // destroys the record.
    context().opening = std::move(outer);
    return result;
}

template INT_PTR openSheet<NarrowSheets>(const PROPSHEETHEADERA* header);
template INT_PTR openSheet<WideSheets>(const PROPSHEETHEADERW* header);

} // namespace eq
