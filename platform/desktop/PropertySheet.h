#pragma once

#include "platform/desktop/PropertySheetPages.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace eq::standin {

/// A sheet owns its pages, from before its window is made until that is destroyed.
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
        // Otherwise the window has done so as it went.
        if (!m_window) releasePages();
    }

    /// Takes a page over. One whose dialog has no template is not shown.
    void take(HPROPSHEETPAGE handle);
    [[nodiscard]] bool isEmpty() const noexcept { return m_pages.empty(); }

    /// Calls the sheet's callback.
    void tell(HWND window, UINT event, LPARAM parameter) const noexcept {
        if (m_callback) m_callback(window, event, parameter);
    }

    /// Shows the start page in a window that has been made.
    void open(HWND window);
    /// What the dialog procedure does but for the start.
    INT_PTR handle(UINT message, WPARAM wParam, LPARAM lParam);
    /// Runs until the sheet is closed, and gives its result.
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
    int m_active; // none at first
    int m_start;
    PFNPROPSHEETCALLBACK m_callback;
    bool m_closed = false;
    INT_PTR m_result = 0;
};

} // namespace eq::standin
