#pragma once

#include "platform/standin/Accelerators.h"
#include "platform/standin/Types.h"

// The system's functions whose names the wedge takes over. Here they have names of their own, under which the table of
// SystemFunctions.cpp offers them to a look-up by name.

namespace standin {

/// MessageBoxW.
int WINAPI showMessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) noexcept;

/// DestroyAcceleratorTable.
BOOL WINAPI destroyAcceleratorTable(HACCEL table) noexcept;

} // namespace standin
