#pragma once

// Menus: trees of items that are built from templates and can be queried. No menu is ever shown.

#include "platform/standin/Types.h"

using HMENU = struct StandinMenu*;
using MENUTEMPLATEA = void;
using MENUTEMPLATEW = void;

inline constexpr UINT MF_BYPOSITION = 0x00000400;

extern "C" {

/// Builds a menu from a template in the standard or the extended form. Both functions do the same, because texts in
/// templates are always wide.
HMENU WINAPI LoadMenuIndirectA(const MENUTEMPLATEA* menuTemplate) noexcept;
HMENU WINAPI LoadMenuIndirectW(const MENUTEMPLATEW* menuTemplate) noexcept;

/// Destroys a menu and all popups below it.
BOOL WINAPI DestroyMenu(HMENU menu) noexcept;

HMENU WINAPI GetSubMenu(HMENU menu, int position) noexcept;
/// Returns the id of an item, or UINT(-1) for a popup.
UINT WINAPI GetMenuItemID(HMENU menu, int position) noexcept;
/// Copies the text of an item to a buffer, and returns its length. Supports MF_BYPOSITION only.
int WINAPI GetMenuStringW(HMENU menu, UINT position, LPWSTR buffer, int size, UINT flags) noexcept;
}
