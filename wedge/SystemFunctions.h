#pragma once

#include "platform/win32.h"
#include "wedge/SystemFunction.h"

/// The system's functions behind the ones that the wedge replaces, as far as it calls them.
namespace systems {

inline constinit const SystemFunction<HRSRC(HMODULE, LPCSTR, LPCSTR, WORD)> FindResourceExA("kernel32",
                                                                                            "FindResourceExA");
inline constinit const SystemFunction<HRSRC(HMODULE, LPCWSTR, LPCWSTR, WORD)> FindResourceExW("kernel32",
                                                                                              "FindResourceExW");
inline constinit const SystemFunction<HGLOBAL(HMODULE, HRSRC)> LoadResource("kernel32", "LoadResource");
inline constinit const SystemFunction<BOOL(HACCEL)> DestroyAcceleratorTable("user32", "DestroyAcceleratorTable");
inline constinit const SystemFunction<int(HWND, LPCSTR, LPCSTR, UINT, WORD)> MessageBoxExA("user32", "MessageBoxExA");
inline constinit const SystemFunction<int(HWND, LPCWSTR, LPCWSTR, UINT, WORD)> MessageBoxExW("user32", "MessageBoxExW");

inline constinit const SystemFunction<HPROPSHEETPAGE(LPCPROPSHEETPAGEA)>
    CreatePropertySheetPageA("comctl32", "CreatePropertySheetPageA");
inline constinit const SystemFunction<HPROPSHEETPAGE(LPCPROPSHEETPAGEW)>
    CreatePropertySheetPageW("comctl32", "CreatePropertySheetPageW");
inline constinit const SystemFunction<BOOL(HPROPSHEETPAGE)> DestroyPropertySheetPage("comctl32",
                                                                                     "DestroyPropertySheetPage");
inline constinit const SystemFunction<INT_PTR(LPCPROPSHEETHEADERA)> PropertySheetA("comctl32", "PropertySheetA");
inline constinit const SystemFunction<INT_PTR(LPCPROPSHEETHEADERW)> PropertySheetW("comctl32", "PropertySheetW");

} // namespace systems
