#pragma once

// Accelerator tables, which can be made, read back and destroyed. No key is translated.

#include "platform/desktop/Keys.h"

using HACCEL = struct StandinAcceleratorTable*;

extern "C" {

/// Characters of an A table are of the ANSI code page. A table without records is refused.
HACCEL WINAPI CreateAcceleratorTableA(LPACCEL records, int count) noexcept;
HACCEL WINAPI CreateAcceleratorTableW(LPACCEL records, int count) noexcept;

/// Without a buffer, the number of records.
int WINAPI CopyAcceleratorTableW(HACCEL table, LPACCEL buffer, int size) noexcept;
}
