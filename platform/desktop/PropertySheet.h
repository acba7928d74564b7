#pragma once

#include "platform/desktop/PropertySheetPages.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace eq::standin {

/// A property sheet. It owns its pages until its window is destroyed. If it never has a window, it owns them until its
/// own end.
class PropertySheet {
public:
    template <typename Unit>
    explicit PropertySheet(const PropSheetHeader<Unit>& header)
        : m_flags(header.dwFlags),
          m_active(-1),
          m_start(static_cast<int>(header.nStartPage)),
          m_callback((header.dwFlags & PSH_USECALLBACK) != 0 ? header.pfnCallback : nullptr) {
        if ((m_flags & PSH_WIZARD) == 0) m_caption = textUnlessNumber(header.pszCaption);
    }
    PropertySheet(const PropertySheet&) = delete;
    PropertySheet& operator=(const PropertySheet&) = delete;
    ~PropertySheet() {
        // A sheet with a window releases the pages when the window is destroyed.
        if (!m_window) releasePages();
    }

    /// Takes ownership of a page. A page whose dialog has no template is destroyed instead of shown.
    void take(HPROPSHEETPAGE handle);
    [[nodiscard]] bool isEmpty() const noexcept { return m_pages.empty(); }

    /// Calls the sheet's callback, if there is one.
    void tell(HWND window, UINT event, LPARAM parameter) const noexcept {
        if (m_callback) m_callback(window, event, parameter);
    }

    /// Shows the start page in the sheet's new window. If that fails, destroys the window, and the result becomes -1.
    void open(HWND window);
    /// Handles a message to the sheet's window, except WM_INITDIALOG. Returns the dialog procedure's result.
    INT_PTR handle(UINT message, WPARAM wParam, LPARAM lParam);
    /// Runs until the sheet is closed, and returns its result.
    INT_PTR run();

private:
    struct Page {
        HPROPSHEETPAGE handle;
        std::shared_ptr<PropertyPage> page;
        HWND window = nullptr;
    };

    int count() const noexcept { return static_cast<int>(m_pages.size()); }
    bool has(int index) const noexcept { return index >= 0 && index < count(); }
    Page& at(int index) noexcept { return m_pages[static_cast<std::size_t>(index)]; }
    HWND windowOf(int index) noexcept { return has(index) ? at(index).window : nullptr; }

    int indexOf(HPROPSHEETPAGE handle) const {
        const auto found = std::ranges::find(m_pages, handle, &Page::handle);
        return found == m_pages.end() ? -1 : static_cast<int>(found - m_pages.begin());
    }

    LRESULT notify(UINT code) noexcept;
    bool activate(int index);
    bool makeDialog(int index);
    bool select(int index, HPROPSHEETPAGE page);
    void turn(UINT code, int direction);
    void close(INT_PTR result) noexcept;
    LRESULT press(WPARAM which);
    std::optional<LRESULT> answer(UINT message, WPARAM wParam, LPARAM lParam);
    void releasePages() noexcept;

    HWND m_window = nullptr;
    DWORD m_flags;
    std::wstring m_caption;
    std::vector<Page> m_pages;
    int m_active; // -1: no page is shown yet
    int m_start;
    PFNPROPSHEETCALLBACK m_callback;
    bool m_closed = false;
    INT_PTR m_result = 0;
};

} // namespace eq::standin
