#pragma once

// Dialogs: windows that are built from templates.
//
// A dialog's units are 6 by 13 pixels for 4 by 8 units, those of the 8-point dialog font at 96 dots per inch, whatever
// font a template names.

#include "platform/desktop/Messages.h"

using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

#pragma pack(push, 2)
struct DLGTEMPLATE {
    DWORD style;
    DWORD dwExtendedStyle;
    WORD cdit;
    SHORT x;
    SHORT y;
    SHORT cx;
    SHORT cy;
};
#pragma pack(pop)
static_assert(sizeof(DLGTEMPLATE) == 18);
using LPCDLGTEMPLATEA = const DLGTEMPLATE*;
using LPCDLGTEMPLATE = const DLGTEMPLATE*;
using LPCDLGTEMPLATEW = LPCDLGTEMPLATE;

inline constexpr DWORD DS_FIXEDSYS = 0x0008;
inline constexpr DWORD DS_SETFONT = 0x0040;
inline constexpr DWORD DS_CONTROL = 0x0400;
inline constexpr DWORD DS_CENTER = 0x0800;

// Places in a dialog's own memory.
inline constexpr int DWLP_MSGRESULT = 0;
inline constexpr int DWLP_DLGPROC = sizeof(LRESULT);
inline constexpr int DWLP_USER = DWLP_DLGPROC + static_cast<int>(sizeof(DLGPROC));
inline constexpr int DLGWINDOWEXTRA = 30;

inline constexpr int IDCANCEL = 2;

extern "C" {

/// Templates are wide, so that the A and W functions are one. A template that names a menu is refused, since there are
/// no resources here, and one for a window at the middle of the screen, since there is none.
HWND WINAPI CreateDialogIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
HWND WINAPI CreateDialogIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;

/// Runs until EndDialog.
INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) noexcept;

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
}
