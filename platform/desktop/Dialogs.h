#pragma once

// Dialogs: windows that are created from templates.
//
// 4 horizontal dialog units are 6 pixels, and 8 vertical dialog units are 13 pixels. These are the units of the 8-point
// dialog font at 96 dots per inch. They do not depend on the font that a template names.

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

// Offsets into a dialog's extra bytes, and the number of these bytes.
inline constexpr int DWLP_MSGRESULT = 0;
inline constexpr int DWLP_DLGPROC = sizeof(LRESULT);
inline constexpr int DWLP_USER = DWLP_DLGPROC + static_cast<int>(sizeof(DLGPROC));
inline constexpr int DLGWINDOWEXTRA = 30;

inline constexpr int IDCANCEL = 2;

extern "C" {

/// Creates a dialog. Both forms do the same, because texts in templates are always wide. A template that names a menu
/// is refused, because menu resources are not available here. A template with DS_CENTER is refused, because there is no
/// screen.
HWND WINAPI CreateDialogIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
HWND WINAPI CreateDialogIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;

/// Runs a dialog until EndDialog, and returns the result that EndDialog receives. Returns -1 if the dialog cannot be
/// created, and 0 if the owner is not a window.
INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) noexcept;

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
}
