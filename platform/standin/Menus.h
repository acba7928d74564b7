#pragma once

// Menus: trees of items that are built from templates and can be asked. Nothing shows them.

#include "platform/standin/Types.h"

using HMENU = struct StandinMenu*;
using MENUTEMPLATEA = void;
using MENUTEMPLATEW = void;

inline constexpr UINT MF_BYCOMMAND = 0x00000000;
inline constexpr UINT MF_BYPOSITION = 0x00000400;

inline constexpr UINT MF_GRAYED = 0x00000001;
inline constexpr UINT MF_DISABLED = 0x00000002;
inline constexpr UINT MF_CHECKED = 0x00000008;
inline constexpr UINT MF_POPUP = 0x00000010;
inline constexpr UINT MF_END = 0x00000080;
inline constexpr UINT MF_SEPARATOR = 0x00000800;

extern "C" {

/// Builds a menu of the standard or the extended form. Templates are wide, so that the two functions are one.
HMENU WINAPI LoadMenuIndirectA(const MENUTEMPLATEA* menuTemplate) noexcept;
HMENU WINAPI LoadMenuIndirectW(const MENUTEMPLATEW* menuTemplate) noexcept;

/// Takes the popups below with it.
BOOL WINAPI DestroyMenu(HMENU menu) noexcept;
BOOL WINAPI IsMenu(HMENU menu) noexcept;

int WINAPI GetMenuItemCount(HMENU menu) noexcept;
HMENU WINAPI GetSubMenu(HMENU menu, int position) noexcept;
/// UINT(-1) for a popup.
UINT WINAPI GetMenuItemID(HMENU menu, int position) noexcept;
int WINAPI GetMenuStringW(HMENU menu, UINT item, LPWSTR buffer, int size, UINT flags) noexcept;
/// For a popup, the number of its items stands in the second byte.
UINT WINAPI GetMenuState(HMENU menu, UINT item, UINT flags) noexcept;
}
