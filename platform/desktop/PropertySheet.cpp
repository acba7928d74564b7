#include "platform/desktop/PropertySheet.h"

#include "platform/desktop/ReplacedFunctions.h"
#include "platform/desktop/Window.h"

#include <utility>

// Selects the page that a sheet shows, and handles the sheet's buttons.

namespace eq::standin {

void PropertySheet::take(HPROPSHEETPAGE handle) {
    auto page = findPropertyPage(handle);
    if (!page) return;
    if (page->dialogTemplate()) {
        m_pages.push_back({handle, std::move(page)});
    } else {
        system::DestroyPropertySheetPage(handle);
    }
}

INT_PTR PropertySheet::run() {
    while (!m_closed && IsWindow(m_window)) dispatchNextMessage();
    return m_result;
}

void PropertySheet::open(HWND window) {
    m_window = window;
    if ((m_flags & PSH_WIZARD) == 0) SetWindowTextW(window, m_caption.c_str());
    tell(window, PSCB_INITIALIZED, 0);
    if (activate(has(m_start) ? m_start : 0)) return;
    m_result = -1;
    DestroyWindow(window);
}

LRESULT PropertySheet::notify(UINT code) noexcept {
    PSHNOTIFY notification{{m_window, 0, code}, 0};
    return SendMessageW(windowOf(m_active), WM_NOTIFY, 0, parameterOf(&notification));
}

/// Shows the page at `index` instead of the active page. Returns false if there is no such page, or if its dialog
/// cannot be created.
bool PropertySheet::activate(int index) {
    if (!has(index) || !makeDialog(index)) return false;
    if (const HWND before = windowOf(m_active)) ShowWindow(before, SW_HIDE);
    m_active = index;
    const std::wstring title = at(index).page->title();
    if ((m_flags & PSH_WIZARD) != 0 && !title.empty()) SetWindowTextW(m_window, title.c_str());
    ShowWindow(windowOf(index), SW_SHOW);
    return true;
}

bool PropertySheet::makeDialog(int index) {
    if (windowOf(index)) return true;
    const Page made = at(index);
    const HWND window = made.page->createDialog(m_window);
    // The first messages of the page's dialog may have destroyed the sheet, and with it the list of pages.
    if (has(index)) at(index).window = window;
    return windowOf(index) != nullptr;
}

/// Shows a page. The handle has priority over the index, unless the page is not of this sheet.
bool PropertySheet::select(int index, HPROPSHEETPAGE page) {
    const int ofPage = indexOf(page);
    return activate(ofPage >= 0 ? ofPage : index);
}

/// Handles a wizard's buttons Next and Back. The active page can refuse the change.
void PropertySheet::turn(UINT code, int direction) {
    if (notify(code) == 0) activate(m_active + direction);
}

/// Marks the sheet as closed. Its window stays: the loop of a modal sheet or the owner of a modeless sheet destroys it.
void PropertySheet::close(INT_PTR result) noexcept {
    m_result = result;
    m_closed = true;
}

LRESULT PropertySheet::press(WPARAM which) {
    switch (which) {
    case PSBTN_BACK:
        turn(PSN_WIZBACK, -1);
        return TRUE;
    case PSBTN_NEXT:
        turn(PSN_WIZNEXT, 1);
        return TRUE;
    case PSBTN_CANCEL:
        close(0);
        return TRUE;
    default:
        return FALSE;
    }
}

std::optional<LRESULT> PropertySheet::answer(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto index = static_cast<int>(wParam);
    const auto page = handleOfNumber<HPROPSHEETPAGE>(static_cast<std::uintptr_t>(lParam));
    switch (message) {
    case PSM_SETCURSEL:
        return select(index, page);
    case PSM_PRESSBUTTON:
        return press(wParam);
    case PSM_GETCURRENTPAGEHWND:
        return m_closed ? 0 : parameterOf(windowOf(m_active));
    case PSM_PAGETOINDEX:
        return indexOf(page);
    case PSM_INDEXTOPAGE:
        return has(index) ? parameterOf(at(index).handle) : 0;
    default:
        return std::nullopt;
    }
}

INT_PTR PropertySheet::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_DESTROY:
        releasePages();
        return FALSE;
    default:
        const auto result = answer(message, wParam, lParam);
        if (result) SetWindowLongPtrW(m_window, DWLP_MSGRESULT, *result);
        return result ? TRUE : FALSE;
    }
}

void PropertySheet::releasePages() noexcept {
    for (const Page& page : std::exchange(m_pages, {})) {
        if (page.window) DestroyWindow(page.window);
        system::DestroyPropertySheetPage(page.handle);
    }
}

} // namespace eq::standin
