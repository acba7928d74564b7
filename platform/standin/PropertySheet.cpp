#include "platform/standin/PropertySheet.h"

#include "platform/standin/MessageBox.h"
#include "platform/standin/PropertySheetTemplate.h"
#include "platform/standin/SystemEntries.h"
#include "platform/standin/Window.h"

#include <array>
#include <utility>

// Which page of a sheet is shown, and what its buttons do.

namespace standin {

void PropertySheet::take(HPROPSHEETPAGE handle) {
    auto page = findPropertyPage(handle);
    if (!page) return;
    m_pages.push_back({handle, std::move(page)});
    if (!m_pages.back().page->findTemplate()) drop(count() - 1);
}

INT_PTR PropertySheet::run() noexcept {
    while (!m_closed && IsWindow(m_window)) {
        MSG message{};
        if (!GetMessageW(&message, nullptr, 0, 0)) {
            // It is meant for the loop outside, too.
            PostMessageW(nullptr, WM_QUIT, message.wParam, 0);
            return -1;
        }
        if (IsDialogMessageW(m_window, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return m_result;
}

void PropertySheet::open(HWND window) {
    m_window = window;
    if ((m_flags & PSH_WIZARD) == 0) SetWindowTextW(window, m_caption.c_str());
    tell(window, PSCB_INITIALIZED, 0);
    activate(has(m_start) ? m_start : 0, 1);
}

LRESULT PropertySheet::notify(int index, UINT code, LPARAM parameter) noexcept {
    PSHNOTIFY notification{{m_window, 0, code}, parameter};
    const HWND window = windowOf(index);
    return window ? SendMessageW(window, WM_NOTIFY, 0, parameterOf(&notification)) : 0;
}

bool PropertySheet::leave() noexcept {
    return has(m_active) && notify(m_active, PSN_KILLACTIVE) == 0;
}

/// Makes the page at `index` the active one, or the one in its place if it does not want to be.
bool PropertySheet::activate(int index, int direction) {
    if (!has(index)) return false;
    if (const HWND before = windowOf(std::exchange(m_active, -1))) ShowWindow(before, SW_HIDE);
    while (true) {
        while (!makeDialog(index)) {
            if (!dropRefused(index)) return false;
            index = std::min(index, count() - 1);
        }
        const LRESULT answer = notify(index, PSN_SETACTIVE);
        const int next = afterRefusal(index, answer, direction);
        if (!has(next) || next == index) break;
        index = next;
    }
    show(index);
    return true;
}

bool PropertySheet::makeDialog(int index) {
    if (windowOf(index)) return true;
    const Page made = at(index);
    const HWND window = made.page->createDialog(m_window);
    // Its first messages may have changed the sheet, or ended it.
    const int place = indexOfPage(made.handle);
    if (has(place)) at(place).window = window;
    return windowOf(index) != nullptr;
}

/// Takes a page out that cannot be shown. A modal sheet ends with it, as one without pages does.
bool PropertySheet::dropRefused(int index) {
    // The sheet may have been destroyed meanwhile.
    if (!has(index)) return false;
    drop(index);
    if (!isEmpty() && (m_flags & PSH_MODELESS) != 0) return true;
    m_result = -1;
    DestroyWindow(m_window);
    return false;
}

/// The page that follows from an answer to PSN_SETACTIVE; the same one if it stays.
int PropertySheet::afterRefusal(int index, LRESULT answer, int direction) const {
    if (answer == 0) return index;
    return answer == -1 ? index + direction : indexOfId(answer);
}

void PropertySheet::drop(int index) {
    const HPROPSHEETPAGE handle = at(index).handle;
    m_pages.erase(m_pages.begin() + index);
    destroyPropertySheetPage(handle);
}

void PropertySheet::show(int index) {
    if (!windowOf(index) || index == m_active) return;
    if (const HWND before = windowOf(m_active)) ShowWindow(before, SW_HIDE);
    const std::wstring title = at(index).page->title();
    if ((m_flags & PSH_WIZARD) != 0 && !title.empty()) SetWindowTextW(m_window, title.c_str());
    m_active = index;
    ShowWindow(windowOf(index), SW_SHOW);
}

/// A page goes before an index; one that is not of this sheet does not count.
bool PropertySheet::select(int index, HPROPSHEETPAGE page) {
    if (!leave()) return false;
    const int ofPage = indexOfPage(page);
    return activate(ofPage >= 0 ? ofPage : index, 1);
}

bool PropertySheet::selectId(LPARAM id) {
    const int index = indexOfId(id);
    return has(index) && select(index, nullptr);
}

/// A wizard's Next and Back. The page may name another one, or stay.
void PropertySheet::turn(UINT code, int direction) {
    const LRESULT answer = notify(m_active, code);
    if (answer == -1) return;
    const int next = answer == 0 ? m_active + direction : indexOfId(answer);
    if (has(next) && leave()) activate(next, direction);
}

bool PropertySheet::apply(bool closes) {
    if (!leave()) return false;
    for (int i = 0; i < count(); ++i) {
        const LRESULT answer = notify(i, PSN_APPLY, closes ? TRUE : FALSE);
        if (answer == PSNRET_INVALID) show(i);
        if (answer == PSNRET_INVALID || answer == PSNRET_INVALID_NOCHANGEPAGE) return false;
    }
    if (!closes) notify(m_active, PSN_SETACTIVE);
    return true;
}

void PropertySheet::cancel(bool byWindow) {
    if (!has(m_active) || notify(m_active, PSN_QUERYCANCEL) != 0) return;
    for (int i = 0; i < count(); ++i) notify(i, PSN_RESET, byWindow ? TRUE : FALSE);
    close(0);
}

/// A modal sheet's window goes with its loop, and the owner of a modeless one destroys it.
void PropertySheet::close(INT_PTR result) noexcept {
    m_result = result;
    m_closed = true;
}

void PropertySheet::setWizardButtons(DWORD flags) noexcept {
    const bool finishes = (flags & (PSWIZB_FINISH | PSWIZB_DISABLEDFINISH)) != 0;
    EnableWindow(button(IdBack), (flags & PSWIZB_BACK) != 0 ? TRUE : FALSE);
    EnableWindow(button(IdNext), (flags & PSWIZB_NEXT) != 0 ? TRUE : FALSE);
    EnableWindow(button(IdFinish), (flags & PSWIZB_FINISH) != 0 ? TRUE : FALSE);
    if ((m_flags & PSH_WIZARDHASFINISH) != 0) return;
    ShowWindow(button(IdNext), finishes ? SW_HIDE : SW_SHOW);
    ShowWindow(button(IdFinish), finishes ? SW_SHOW : SW_HIDE);
    SendMessageW(m_window, DM_SETDEFID, static_cast<WPARAM>(finishes ? IdFinish : IdNext), 0);
}

void PropertySheet::command(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
    case IDOK:
        if (apply(true)) close(IDOK);
        return;
    case IdApply:
        if (apply(false)) EnableWindow(button(IdApply), FALSE);
        return;
    case IDCANCEL:
        return cancel(false);
    case IDHELP:
        notify(m_active, PSN_HELP);
        return;
    case IdBack:
        return turn(PSN_WIZBACK, -1);
    case IdNext:
        return turn(PSN_WIZNEXT, 1);
    case IdFinish:
        if (notify(m_active, PSN_WIZFINISH) == 0) close(IDOK);
        return;
    default:
        // The page may have put a control of its own beside the buttons.
        if (const HWND page = windowOf(m_active)) SendMessageW(page, WM_COMMAND, wParam, lParam);
    }
}

LRESULT PropertySheet::press(WPARAM which) {
    // In the order of their PSBTN_ numbers.
    constexpr std::array<int, PSBTN_MAX + 1> ids = {IdBack, IdNext, IdFinish, IDOK, IdApply, IDCANCEL, IDHELP};
    if (which >= ids.size()) return FALSE;
    command(static_cast<WPARAM>(ids[which]), 0);
    return TRUE;
}

std::optional<LRESULT> PropertySheet::answer(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto index = static_cast<int>(wParam);
    const auto page = handleOfNumber<HPROPSHEETPAGE>(static_cast<std::uintptr_t>(lParam));
    switch (message) {
    case PSM_SETCURSEL:
        return select(index, page);
    case PSM_SETCURSELID:
        return selectId(lParam);
    case PSM_CHANGED:
    case PSM_UNCHANGED:
        EnableWindow(button(IdApply), message == PSM_CHANGED ? TRUE : FALSE);
        return 0;
    case PSM_APPLY:
        return apply(false);
    case PSM_SETWIZBUTTONS:
        setWizardButtons(static_cast<DWORD>(lParam));
        return 0;
    case PSM_PRESSBUTTON:
        return press(wParam);
    case PSM_ISDIALOGMESSAGE:
        return IsDialogMessageW(m_window, handleOfNumber<LPMSG>(static_cast<std::uintptr_t>(lParam)));
    case PSM_GETCURRENTPAGEHWND:
        return m_closed ? 0 : parameterOf(windowOf(m_active));
    case PSM_HWNDTOINDEX:
        return indexOfWindow(handleOf(static_cast<LPARAM>(wParam)));
    case PSM_INDEXTOHWND:
        return parameterOf(windowOf(index));
    case PSM_PAGETOINDEX:
        return indexOfPage(page);
    case PSM_INDEXTOPAGE:
        return has(index) ? parameterOf(at(index).handle) : 0;
    case PSM_IDTOINDEX:
        return indexOfId(lParam);
    case PSM_INDEXTOID:
        return has(index) ? at(index).page->templateId() : 0;
    default:
        return std::nullopt;
    }
}

INT_PTR PropertySheet::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        command(wParam, lParam);
        return TRUE;
    case WM_CLOSE:
        cancel(true);
        return TRUE;
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
        destroyPropertySheetPage(page.handle);
    }
}

} // namespace standin
