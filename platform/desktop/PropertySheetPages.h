#pragma once

// The interface of pages to their sheets.

#include "platform/desktop/PropertySheets.h"
#include "platform/desktop/Window.h"
#include "platform/standin/CodePages.h"

#include <memory>
#include <string>

namespace eq::standin {

/// A page: the system's copy of a record and of its texts. The page's callback and its dialog may change the copy.
class PropertyPage {
public:
    PropertyPage() = default;
    PropertyPage(const PropertyPage&) = delete;
    PropertyPage& operator=(const PropertyPage&) = delete;
    virtual ~PropertyPage() = default;

    /// Returns the template of the page's dialog, or null.
    [[nodiscard]] virtual const void* dialogTemplate() const noexcept = 0;
    /// Returns the page's own title, or an empty text.
    [[nodiscard]] virtual std::wstring title() const = 0;
    /// Returns the result of the page's callback, or 1 (consent) without a callback.
    virtual UINT tell(UINT event) noexcept = 0;
    /// Notifies the callback of the page's end, and decrements the caller's counter.
    virtual void release() noexcept = 0;
    /// Returns the page's new dialog, or null if there is no template or the callback refuses.
    virtual HWND createDialog(HWND sheet) = 0;
};

std::shared_ptr<PropertyPage> findPropertyPage(HPROPSHEETPAGE handle);

/// Returns the text, or an empty text if the pointer is a number.
inline std::wstring textUnlessNumber(LPCSTR text) {
    return isNumber(text) ? std::wstring() : wideFromAnsi(text);
}
inline std::wstring textUnlessNumber(LPCWSTR text) {
    return isNumber(text) ? std::wstring() : text;
}

} // namespace eq::standin
