#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"
#include "wedge/functions/PropertyPages.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace eq {

/// A page that was made from the caller's record.
struct SheetPage {
    ULONG_PTR templateName; ///< the caller's `pszTemplate`
    HPROPSHEETPAGE handle;
    SystemPage owner; ///< empty once the system was asked to open the sheet, because the system then owns the page
};

/// What belongs to one sheet, from the call that opens it until its window ends.
struct SheetRecord {
    SheetRecord() = default;
    SheetRecord(const SheetRecord&) = delete;
    SheetRecord& operator=(const SheetRecord&) = delete;
    ~SheetRecord();

    std::unique_ptr<std::byte[]> headerCopy; ///< the header that the system receives
    bool isWide = false;
    PFNPROPSHEETCALLBACK userCallback = nullptr;
    bool hasOwnPages = false;     ///< the caller gave records, not handles
    std::vector<SheetPage> pages; ///< in their order
    std::vector<HPROPSHEETPAGE> handles;
    const void* caption = nullptr;  ///< a string of the wedge's own, if the caller gave an id
    WNDPROC previousProc = nullptr; ///< the window's procedure before SheetWindowProc
};

/// The sheet that is being opened. A sheet's own code may open another meanwhile, on the same thread.
struct SheetContext {
    CriticalSection lock;
    std::unique_ptr<SheetRecord> opening;
};

/// Opens a sheet of the system with rewritten pages, a translated caption and translated buttons. The caller's records
/// are not written to. The sheet answers the messages that work by resource ids, which the system's sheet no longer
/// knows. One sheet is being opened at a time: a modal sheet blocks other calls until it is closed.
///
/// `Sheets` is one of the forms of PropertySheetForms.h. Throws std::bad_alloc and the exceptions of the language
/// store.
template <typename Sheets>
INT_PTR openSheet(const typename Sheets::Header* header);

} // namespace eq
