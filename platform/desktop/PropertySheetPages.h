#pragma once

// What sheets see of their pages.

#include "platform/desktop/PropertySheets.h"
#include "platform/desktop/Window.h"
#include "platform/standin/CodePages.h"

#include <memory>
#include <string>

namespace eq::standin {

/// A page: the system's own copy of a record and of its texts. It is the callback's and the dialog's to change.
class PropertyPage {
public:
    PropertyPage() = default;
    PropertyPage(const PropertyPage&) = delete;
    PropertyPage& operator=(const PropertyPage&) = delete;
    virtual ~PropertyPage() = default;

    /// The template of its dialog, or null.
    [[nodiscard]] virtual const void* dialogTemplate() const noexcept = 0;
    /// Empty if the page has none of its own.
    [[nodiscard]] virtual std::wstring title() const = 0;
    /// Calls the page's callback. A page without one agrees to everything.
    virtual UINT tell(UINT event) noexcept = 0;
    /// Tells the callback of the page's end, and lets go of the caller's counter.
    virtual void release() noexcept = 0;
    /// Null if there is no template, or the callback refuses it.
    virtual HWND createDialog(HWND sheet) = 0;
};

std::shared_ptr<PropertyPage> findPropertyPage(HPROPSHEETPAGE handle);

/// A text; empty if a number stands in its place.
inline std::wstring textUnlessNumber(LPCSTR text) {
    return isNumber(text) ? std::wstring() : wideFromAnsi(text);
}
inline std::wstring textUnlessNumber(LPCWSTR text) {
    return isNumber(text) ? std::wstring() : text;
}

} // namespace eq::standin
