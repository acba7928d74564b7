#include "platform/desktop/PropertySheets.h"

#include "platform/desktop/PropertySheet.h"
#include "platform/desktop/PropertySheetTemplate.h"
#include "platform/desktop/ReplacedFunctions.h"
#include "platform/desktop/Window.h"
#include "platform/standin/Refuse.h"

#include <algorithm>

// Opens property sheets.

namespace {

using eq::standin::parameterOf;
using eq::standin::PropertySheet;
using eq::standin::PropSheetHeader;
using eq::standin::refuse;

constexpr DWORD KnownSheetFlags =
    PSH_PROPSHEETPAGE | PSH_WIZARD | PSH_NOAPPLYNOW | PSH_USECALLBACK | PSH_HASHELP | PSH_MODELESS;

/// Returns the sheets that have windows. `windowLock` guards the map.
std::map<HWND, std::shared_ptr<PropertySheet>>& sheets() {
    static std::map<HWND, std::shared_ptr<PropertySheet>> open;
    return open;
}

std::shared_ptr<PropertySheet> sheetOf(HWND window) {
    const std::lock_guard guard(eq::standin::windowLock());
    const auto found = sheets().find(window);
    return found == sheets().end() ? nullptr : found->second;
}

std::shared_ptr<PropertySheet> enter(HWND window, LPARAM parameter) {
    auto sheet =
        *eq::standin::handleOfNumber<const std::shared_ptr<PropertySheet>*>(static_cast<std::uintptr_t>(parameter));
    const std::lock_guard guard(eq::standin::windowLock());
    sheets().emplace(window, sheet);
    return sheet;
}

void forget(HWND window) {
    const std::lock_guard guard(eq::standin::windowLock());
    sheets().erase(window);
}

INT_PTR CALLBACK sheetProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept try {
    if (message == WM_INITDIALOG) {
        enter(window, lParam)->open(window);
        return TRUE;
    }
    // This reference keeps the sheet alive while it handles the message.
    const auto sheet = sheetOf(window);
    if (message == WM_NCDESTROY) forget(window);
    return sheet ? sheet->handle(message, wParam, lParam) : FALSE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

HPROPSHEETPAGE createPage(LPCPROPSHEETPAGEA record) noexcept {
    return eq::standin::system::CreatePropertySheetPageA(record);
}

HPROPSHEETPAGE createPage(LPCPROPSHEETPAGEW record) noexcept {
    return eq::standin::system::CreatePropertySheetPageW(record);
}

/// Passes the pages of a header to a sheet. The header contains handles or records. A record's `dwSize` is the distance
/// to the next record.
template <typename Unit>
void takePages(PropertySheet& sheet, const PropSheetHeader<Unit>& header) {
    if ((header.dwFlags & PSH_PROPSHEETPAGE) == 0) {
        std::for_each_n(header.phpage, header.nPages, [&](HPROPSHEETPAGE page) { sheet.take(page); });
        return;
    }
    const auto* record = header.ppsp;
    for (UINT i = 0; i < header.nPages; ++i) {
        sheet.take(createPage(record));
        record = reinterpret_cast<decltype(record)>(reinterpret_cast<const std::byte*>(record) + record->dwSize);
    }
}

template <typename Unit>
HWND createSheet(const std::shared_ptr<PropertySheet>& sheet, const PropSheetHeader<Unit>& header, HWND owner) {
    eq::standin::PropertySheetTemplate source(header.dwFlags);
    sheet->tell(nullptr, PSCB_PRECREATE, parameterOf(source.get()));
    return CreateDialogIndirectParamW(header.hInstance, source.get(), owner, &sheetProcedure, parameterOf(&sheet));
}

template <typename Unit>
INT_PTR runModal(const std::shared_ptr<PropertySheet>& sheet, const PropSheetHeader<Unit>& header) {
    const HWND window = createSheet(sheet, header, eq::standin::topLevelOf(header.hwndParent));
    const INT_PTR result = window ? sheet->run() : -1;
    if (window && IsWindow(window)) DestroyWindow(window);
    return result;
}

template <typename Unit>
INT_PTR openSheet(const PropSheetHeader<Unit>* header) noexcept try {
    if (!header || header->dwSize < PROPSHEETHEADERA_V1_SIZE) return refuse(ERROR_INVALID_PARAMETER, INT_PTR{-1});
    if (header->nPages == 0) return refuse(ERROR_INVALID_PARAMETER, INT_PTR{-1});
    if ((header->dwFlags & ~KnownSheetFlags) != 0) return refuse(ERROR_NOT_SUPPORTED, INT_PTR{-1});

    const auto sheet = std::make_shared<PropertySheet>(*header);
    takePages(*sheet, *header);
    if (sheet->isEmpty()) return refuse(ERROR_RESOURCE_NAME_NOT_FOUND, INT_PTR{-1});
    if ((header->dwFlags & PSH_MODELESS) == 0) return runModal(sheet, *header);
    const HWND window = createSheet(sheet, *header, header->hwndParent);
    return window ? parameterOf(window) : -1;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY, INT_PTR{-1});
}

} // namespace

INT_PTR WINAPI eq::standin::system::PropertySheetA(LPCPROPSHEETHEADERA header) noexcept {
    return openSheet(header);
}

INT_PTR WINAPI eq::standin::system::PropertySheetW(LPCPROPSHEETHEADERW header) noexcept {
    return openSheet(header);
}
