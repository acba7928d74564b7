#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"
#include "wedge/functions/PropertyPages.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace eq {

/// A page that was created from the caller's record.
struct SheetPage {
    ULONG_PTR templateName; ///< the caller's `pszTemplate`
    HPROPSHEETPAGE handle;
    SystemPage owner; ///< empty after the call that opens the sheet, because the system then owns the page
};

/// The data of one sheet, from the call that opens the sheet until its window is destroyed.
struct SheetRecord {
    SheetRecord() = default;
    SheetRecord(const SheetRecord&) = delete;
    SheetRecord& operator=(const SheetRecord&) = delete;
    ~SheetRecord();

    std::unique_ptr<std::byte[]> headerCopy; ///< the header that the system receives
    bool isWide = false;
    PFNPROPSHEETCALLBACK userCallback = nullptr;
    bool hasOwnPages = false;     ///< the caller passed records, not handles
    std::vector<SheetPage> pages; ///< in the order of the caller's records
    std::vector<HPROPSHEETPAGE> handles;
    const void* caption = nullptr;  ///< the loaded string, if the caller passed a string id
    WNDPROC previousProc = nullptr; ///< the window's procedure before SheetWindowProc
};

/// The sheet that is being opened. Its callbacks may open another sheet on the same thread.
struct SheetContext {
    CriticalSection lock;
    std::unique_ptr<SheetRecord> opening;
};

/// Opens a system sheet with rewritten pages, a translated caption and translated buttons. The caller's records stay
/// unchanged. The wedge answers the messages that name a page by its resource id, because the system does not know the
/// ids of in-memory pages. Only one thread opens a sheet at a time: a modal sheet blocks the calls of other threads
/// until it is closed.
///
/// `Sheets` is one of the forms of PropertySheetForms.h. Throws std::bad_alloc and the exceptions of the language
/// store.
template <typename Sheets>
INT_PTR openSheet(const typename Sheets::Header* header);

} // namespace eq
