#pragma once

// Dialogs: windows that are built from templates, and the keys that move between their controls.
//
// A dialog's units are 6 by 13 pixels for 4 by 8 units, those of the 8-point dialog font at 96 dots per inch, whatever
// font a template names.

#include "platform/standin/Messages.h"

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

inline constexpr DWORD DS_ABSALIGN = 0x0001;
inline constexpr DWORD DS_3DLOOK = 0x0004;
inline constexpr DWORD DS_FIXEDSYS = 0x0008;
inline constexpr DWORD DS_NOFAILCREATE = 0x0010;
inline constexpr DWORD DS_SETFONT = 0x0040;
inline constexpr DWORD DS_MODALFRAME = 0x0080;
inline constexpr DWORD DS_NOIDLEMSG = 0x0100;
inline constexpr DWORD DS_CONTROL = 0x0400;
inline constexpr DWORD DS_CENTER = 0x0800;

// Places in a dialog's own memory.
inline constexpr int DWLP_MSGRESULT = 0;
inline constexpr int DWLP_DLGPROC = sizeof(LRESULT);
inline constexpr int DWLP_USER = DWLP_DLGPROC + static_cast<int>(sizeof(DLGPROC));
inline constexpr int DLGWINDOWEXTRA = 30;

inline constexpr int IDCANCEL = 2;

inline constexpr UINT DM_GETDEFID = WM_USER;
inline constexpr UINT DM_SETDEFID = WM_USER + 1;
inline constexpr WORD DC_HASDEFID = 0x534B;

inline constexpr int DLGC_WANTARROWS = 0x0001;
inline constexpr int DLGC_WANTTAB = 0x0002;
inline constexpr int DLGC_WANTMESSAGE = 0x0004;
inline constexpr int DLGC_HASSETSEL = 0x0008;
inline constexpr int DLGC_DEFPUSHBUTTON = 0x0010;
inline constexpr int DLGC_UNDEFPUSHBUTTON = 0x0020;
inline constexpr int DLGC_WANTCHARS = 0x0080;
inline constexpr int DLGC_STATIC = 0x0100;
inline constexpr int DLGC_BUTTON = 0x2000;

inline constexpr int MSGF_DIALOGBOX = 0;

extern "C" {

/// Templates are wide, so that the A and W functions are one. A template that names a menu is refused, since there are
/// no resources here, and one for a window at the middle of the screen, since there is none.
HWND WINAPI CreateDialogIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
HWND WINAPI CreateDialogIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND parent, DLGPROC procedure,
                                       LPARAM parameter) noexcept;

/// Runs until EndDialog. With no message left, the owner gets WM_ENTERIDLE and the thread waits for one.
INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE module, LPCDLGTEMPLATEA dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
INT_PTR WINAPI DialogBoxIndirectParamW(HINSTANCE module, LPCDLGTEMPLATEW dialog, HWND owner, DLGPROC procedure,
                                       LPARAM parameter) noexcept;
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) noexcept;

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rectangle) noexcept;

/// Tab, Enter and Escape are the dialog's; all other keys go to the control. There are no mnemonics and no groups.
BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message) noexcept;
HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) noexcept;
}
