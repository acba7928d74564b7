#include "platform/desktop/PropertySheetPages.h"

#include "platform/desktop/DialogTemplate.h"
#include "platform/desktop/ReplacedFunctions.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <cstring>
#include <list>

// Pages: copies of the caller's records, and the dialogs that are created from them.

namespace {

using eq::standin::PropertyPage;
using eq::standin::PropSheetPage;
using eq::standin::refuse;

eq::standin::HandleTable<PropertyPage>& pages() {
    static eq::standin::HandleTable<PropertyPage> table;
    return table;
}

constexpr DWORD KnownPageFlags = PSP_DLGINDIRECT | PSP_USETITLE | PSP_USEREFPARENT | PSP_USECALLBACK;

/// Returns the style of a page's dialog. The dialog becomes a control of its sheet, and is hidden until the sheet shows
/// it. The template does not decide this.
DWORD pageStyle(DWORD style) noexcept {
    constexpr DWORD ofWindowsAlone = WS_CAPTION | WS_SYSMENU | WS_POPUP | WS_DISABLED | WS_VISIBLE;
    return (style & ~ofWindowsAlone) | WS_CHILD | WS_TABSTOP | DS_CONTROL;
}

template <typename Unit>
class PageOf final : public PropertyPage {
public:
    using Record = PropSheetPage<Unit>;

    /// Copies a record of `dwSize` bytes. The record may be a shorter, older version, or may end with the caller's own
    /// data.
    explicit PageOf(const Record* given) : m_bytes(std::max<std::size_t>(given->dwSize, sizeof(Record))) {
        std::memcpy(m_bytes.data(), given, given->dwSize);
        const DWORD flags = record().dwFlags;
        if ((flags & PSP_USETITLE) != 0) keepText(record().pszTitle);
        if ((flags & PSP_USEREFPARENT) != 0) m_users = record().pcRefParent;
        if (m_users) ++*m_users;
    }

    [[nodiscard]] const void* dialogTemplate() const noexcept override {
        return has(PSP_DLGINDIRECT) ? record().pResource : nullptr;
    }

    [[nodiscard]] std::wstring title() const override {
        return has(PSP_USETITLE) ? eq::standin::textUnlessNumber(record().pszTitle) : std::wstring();
    }

    UINT tell(UINT event) noexcept override {
        return has(PSP_USECALLBACK) && record().pfnCallback ? record().pfnCallback(nullptr, event, &record()) : 1;
    }

    void release() noexcept override {
        tell(PSPCB_RELEASE);
        if (m_users) --*m_users;
    }

    HWND createDialog(HWND sheet) override {
        if (tell(PSPCB_CREATE) == 0) return nullptr;
        const void* const source = dialogTemplate();
        if (!source) return nullptr;
        auto read = eq::standin::readDialogTemplate(source);
        read.style = pageStyle(read.style);
        return eq::standin::createDialog(record().hInstance, read, sheet, record().pfnDlgProc,
                                         eq::standin::parameterOf(&record()));
    }

private:
    Record& record() noexcept { return *reinterpret_cast<Record*>(m_bytes.data()); }
    const Record& record() const noexcept { return *reinterpret_cast<const Record*>(m_bytes.data()); }
    bool has(DWORD flag) const noexcept { return (record().dwFlags & flag) != 0; }

    void keepText(const Unit*& text) {
        if (!eq::standin::isNumber(text)) text = m_texts.emplace_back(text).c_str();
    }

    std::vector<std::byte> m_bytes;
    std::list<std::basic_string<Unit>> m_texts;
    UINT* m_users = nullptr;
};

template <typename Unit>
HPROPSHEETPAGE createPage(const PropSheetPage<Unit>* given) noexcept try {
    if (!given || given->dwSize < PROPSHEETPAGEA_V1_SIZE) return refuse(ERROR_INVALID_PARAMETER);
    if ((given->dwFlags & ~KnownPageFlags) != 0) return refuse(ERROR_NOT_SUPPORTED);
    const auto page = std::make_shared<PageOf<Unit>>(given);
    const auto handle = static_cast<HPROPSHEETPAGE>(pages().add(page));
    // A caller that uses version 1 of the record does not know this event.
    if (given->dwSize > PROPSHEETPAGEA_V1_SIZE) page->tell(PSPCB_ADDREF);
    return handle;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace

namespace eq::standin {

std::shared_ptr<PropertyPage> findPropertyPage(HPROPSHEETPAGE handle) {
    return pages().find(handle);
}

HPROPSHEETPAGE WINAPI system::CreatePropertySheetPageA(LPCPROPSHEETPAGEA record) noexcept {
    return createPage(record);
}

HPROPSHEETPAGE WINAPI system::CreatePropertySheetPageW(LPCPROPSHEETPAGEW record) noexcept {
    return createPage(record);
}

BOOL WINAPI system::DestroyPropertySheetPage(HPROPSHEETPAGE handle) noexcept {
    const auto page = pages().find(handle);
    if (!page || !pages().remove(handle)) return refuse(ERROR_INVALID_HANDLE);
    page->release();
    return TRUE;
}

} // namespace eq::standin
