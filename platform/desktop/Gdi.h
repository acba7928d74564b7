#pragma once

// The functions that describe the system's dialog font.

#include "platform/standin/Types.h"

using HGDIOBJ = void*;
using HDC = struct StandinDc*;

inline constexpr int DEFAULT_GUI_FONT = 17;
inline constexpr int LOGPIXELSY = 90;
inline constexpr int LF_FACESIZE = 32;

struct LOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTA) == 60);

extern "C" {

/// Returns the font Tahoma at 8 points for DEFAULT_GUI_FONT, and null for any other index.
HGDIOBJ WINAPI GetStockObject(int index) noexcept;
int WINAPI GetObjectA(HGDIOBJ object, int size, void* buffer) noexcept;
/// Returns the device context of the screen for a null window, and null for any other window.
HDC WINAPI GetDC(HWND window) noexcept;
int WINAPI ReleaseDC(HWND window, HDC context) noexcept;
/// Returns 96 for LOGPIXELSY, and 0 for any other index.
int WINAPI GetDeviceCaps(HDC context, int index) noexcept;
int WINAPI MulDiv(int number, int numerator, int denominator) noexcept;
}
