#pragma once

#include "platform/win32.h"

/// Opens a sheet of the system with rewritten pages, a translated caption and translated buttons. The caller's records
/// are not written to. The sheet answers the messages that work by resource ids, which the system's sheet no longer
/// knows. One sheet is being opened at a time: a modal one holds others up until it is closed.
///
/// `Sheets` is one of the forms of PropertySheetForms.h. Throws std::bad_alloc, and what building the store throws.
template <typename Sheets>
INT_PTR openSheet(const typename Sheets::Header* header);
