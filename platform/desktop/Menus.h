#pragma once

// Menus: trees of items that are built from templates and can be asked. Nothing shows them.

#include "platform/standin/Types.h"

using HMENU = struct StandinMenu*;
using MENUTEMPLATEA = void;
using MENUTEMPLATEW = void;

inline constexpr UINT MF_BYPOSITION = 0x00000400;

extern "C" {

/// Builds a menu of the standard or the extended form. Templates are wide, so that the two functions are one.
HMENU WINAPI LoadMenuIndirectA(const MENUTEMPLATEA* menuTemplate) noexcept;
HMENU WINAPI LoadMenuIndirectW(const MENUTEMPLATEW* menuTemplate) noexcept;

/// Takes the popups below with it.
BOOL WINAPI DestroyMenu(HMENU menu) noexcept;

HMENU WINAPI GetSubMenu(HMENU menu, int position) noexcept;
/// UINT(-1) for a popup.
UINT WINAPI GetMenuItemID(HMENU menu, int position) noexcept;
/// With MF_BYPOSITION alone, into a buffer.
int WINAPI GetMenuStringW(HMENU menu, UINT position, LPWSTR buffer, int size, UINT flags) noexcept;
}
