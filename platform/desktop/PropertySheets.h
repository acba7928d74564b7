#pragma once

// Property sheets: dialogs that contain pages and common buttons. Each page is a separate dialog.
//
// The functions are system functions. Callers find them only by name, with GetProcAddress in the library "comctl32". A
// sheet has buttons, but no tabs, icons and pictures, because nothing is drawn. Its size does not depend on its pages.
// Pages are not asked whether they may be shown or left (PSN_SETACTIVE, PSN_KILLACTIVE). Only the buttons Back, Next
// and Cancel can be pressed. Sheets use no resources: templates are in memory, texts are not resource ids, and pages
// have no ids.

#include "platform/desktop/Dialogs.h"

using HPROPSHEETPAGE = struct StandinPropertyPage*;
using HBITMAP = struct StandinBitmap*;
using HPALETTE = struct StandinPalette*;

struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};

struct PSHNOTIFY {
    NMHDR hdr;
    LPARAM lParam;
};

namespace eq::standin {

/// The records of pages and sheets. `Unit` is char in the A form, and wchar_t in the W form.
template <typename Unit>
struct PropSheetPage {
    DWORD dwSize;
    DWORD dwFlags;
    HINSTANCE hInstance;
    union {
        const Unit* pszTemplate;
        LPCDLGTEMPLATEW pResource;
    };
    union {
        HICON hIcon;
        const Unit* pszIcon;
    };
    const Unit* pszTitle;
    DLGPROC pfnDlgProc;
    LPARAM lParam;
    UINT(CALLBACK* pfnCallback)(HWND, UINT, PropSheetPage*);
    UINT* pcRefParent;
    const Unit* pszHeaderTitle;
    const Unit* pszHeaderSubTitle;
    HANDLE hActCtx;
};

template <typename Unit>
struct PropSheetHeader {
    DWORD dwSize;
    DWORD dwFlags;
    HWND hwndParent;
    HINSTANCE hInstance;
    union {
        HICON hIcon;
        const Unit* pszIcon;
    };
    const Unit* pszCaption;
    UINT nPages;
    union {
        UINT nStartPage;
        const Unit* pStartPage;
    };
    union {
        const PropSheetPage<Unit>* ppsp;
        HPROPSHEETPAGE* phpage;
    };
    int(CALLBACK* pfnCallback)(HWND, UINT, LPARAM);
    union {
        HBITMAP hbmWatermark;
        const Unit* pszbmWatermark;
    };
    HPALETTE hplWatermark;
    union {
        HBITMAP hbmHeader;
        const Unit* pszbmHeader;
    };
};

} // namespace eq::standin

using PROPSHEETPAGEA = eq::standin::PropSheetPage<char>;
using PROPSHEETPAGEW = eq::standin::PropSheetPage<wchar_t>;
using LPCPROPSHEETPAGEA = const PROPSHEETPAGEA*;
using LPCPROPSHEETPAGEW = const PROPSHEETPAGEW*;
using LPFNPSPCALLBACKW = UINT(CALLBACK*)(HWND, UINT, PROPSHEETPAGEW*);

using PROPSHEETHEADERA = eq::standin::PropSheetHeader<char>;
using PROPSHEETHEADERW = eq::standin::PropSheetHeader<wchar_t>;
using LPCPROPSHEETHEADERA = const PROPSHEETHEADERA*;
using LPCPROPSHEETHEADERW = const PROPSHEETHEADERW*;
using PFNPROPSHEETCALLBACK = int(CALLBACK*)(HWND, UINT, LPARAM);

static_assert(sizeof(PROPSHEETPAGEA) == 8 + 11 * sizeof(void*));
static_assert(sizeof(PROPSHEETHEADERA) == 8 + 11 * sizeof(void*));

// The sizes of version 1 of the records. Later versions have more members at the end.
inline constexpr DWORD PROPSHEETPAGEA_V1_SIZE = offsetof(PROPSHEETPAGEA, pcRefParent) + sizeof(UINT*);
inline constexpr DWORD PROPSHEETHEADERA_V1_SIZE =
    offsetof(PROPSHEETHEADERA, pfnCallback) + sizeof(PFNPROPSHEETCALLBACK);

// The supported flags of pages. A page with any other flag is refused.
inline constexpr DWORD PSP_DLGINDIRECT = 0x00000001;
inline constexpr DWORD PSP_USETITLE = 0x00000008;
inline constexpr DWORD PSP_USEREFPARENT = 0x00000040;
inline constexpr DWORD PSP_USECALLBACK = 0x00000080;

inline constexpr UINT PSPCB_ADDREF = 0;
inline constexpr UINT PSPCB_RELEASE = 1;
inline constexpr UINT PSPCB_CREATE = 2;

// Flags of sheets. A sheet with PSH_USEPSTARTPAGE, or with a flag that is not listed here, is refused.
inline constexpr DWORD PSH_PROPSHEETPAGE = 0x00000008;
inline constexpr DWORD PSH_WIZARD = 0x00000020;
inline constexpr DWORD PSH_USEPSTARTPAGE = 0x00000040;
inline constexpr DWORD PSH_NOAPPLYNOW = 0x00000080;
inline constexpr DWORD PSH_USECALLBACK = 0x00000100;
inline constexpr DWORD PSH_HASHELP = 0x00000200;
inline constexpr DWORD PSH_MODELESS = 0x00000400;

inline constexpr UINT PSCB_INITIALIZED = 1;
inline constexpr UINT PSCB_PRECREATE = 2;

inline constexpr UINT PSN_FIRST = 0U - 200U;
inline constexpr UINT PSN_WIZBACK = PSN_FIRST - 6;
inline constexpr UINT PSN_WIZNEXT = PSN_FIRST - 7;

inline constexpr UINT PSM_SETCURSEL = WM_USER + 101;
inline constexpr UINT PSM_PRESSBUTTON = WM_USER + 113;
inline constexpr UINT PSM_SETCURSELID = WM_USER + 114;
inline constexpr UINT PSM_GETCURRENTPAGEHWND = WM_USER + 118;
inline constexpr UINT PSM_PAGETOINDEX = WM_USER + 131;
inline constexpr UINT PSM_INDEXTOPAGE = WM_USER + 132;
inline constexpr UINT PSM_IDTOINDEX = WM_USER + 133;
inline constexpr UINT PSM_INDEXTOID = WM_USER + 134;

inline constexpr WPARAM PSBTN_BACK = 0;
inline constexpr WPARAM PSBTN_NEXT = 1;
inline constexpr WPARAM PSBTN_CANCEL = 5;
