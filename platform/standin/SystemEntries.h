#pragma once

#include "platform/standin/Accelerators.h"
#include "platform/standin/PropertySheets.h"

// The system's functions whose names the wedge takes over. Here they have names of their own, under which the table of
// SystemFunctions.cpp offers them to a look-up by name.

namespace standin {

/// MessageBoxExA and MessageBoxExW. The language is written down; there are no texts of the system's own to choose.
int WINAPI showMessageBoxExA(HWND owner, LPCSTR text, LPCSTR caption, UINT type, WORD language) noexcept;
int WINAPI showMessageBoxExW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type, WORD language) noexcept;

/// CreatePropertySheetPageA, CreatePropertySheetPageW and DestroyPropertySheetPage.
HPROPSHEETPAGE WINAPI createPropertySheetPageA(LPCPROPSHEETPAGEA record) noexcept;
HPROPSHEETPAGE WINAPI createPropertySheetPageW(LPCPROPSHEETPAGEW record) noexcept;
BOOL WINAPI destroyPropertySheetPage(HPROPSHEETPAGE page) noexcept;

/// PropertySheetA and PropertySheetW.
INT_PTR WINAPI propertySheetA(LPCPROPSHEETHEADERA header) noexcept;
INT_PTR WINAPI propertySheetW(LPCPROPSHEETHEADERW header) noexcept;

/// DestroyAcceleratorTable.
BOOL WINAPI destroyAcceleratorTable(HACCEL table) noexcept;

} // namespace standin
