#pragma once

// Accelerator tables. They can be created, copied and destroyed, but key presses are not translated into commands.

#include "platform/desktop/Keys.h"

using HACCEL = struct StandinAcceleratorTable*;

extern "C" {

/// Creates a table. The A form reads characters in the ANSI code page. A table without records is refused.
HACCEL WINAPI CreateAcceleratorTableA(LPACCEL records, int count) noexcept;
HACCEL WINAPI CreateAcceleratorTableW(LPACCEL records, int count) noexcept;

/// Copies records to the buffer and returns their number. Returns the number of records in the table if `buffer` is
/// null.
int WINAPI CopyAcceleratorTableW(HACCEL table, LPACCEL buffer, int size) noexcept;
}
