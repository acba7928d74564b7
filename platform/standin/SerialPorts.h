#pragma once

// Serial ports. A port without a device is not found. Only tests assign devices to "COM1" to "COM4" (TestHooks.h).

#include "platform/standin/System.h"
#include "platform/standin/Types.h"

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD CBR_19200 = 19200;
inline constexpr BYTE NOPARITY = 0;
inline constexpr BYTE ODDPARITY = 1;
inline constexpr BYTE EVENPARITY = 2;
inline constexpr BYTE ONESTOPBIT = 0;
inline constexpr BYTE TWOSTOPBITS = 2;

struct DCB {
    DWORD DCBlength;
    DWORD BaudRate;
    BYTE ByteSize;
    BYTE Parity;
    BYTE StopBits;
};
using LPDCB = DCB*;
using LPOVERLAPPED = struct OVERLAPPED*;

extern "C" {

/// Opens a serial port for exclusive use. Other files are not found.
HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security, DWORD creation,
                          DWORD attributes, HANDLE model) noexcept;
BOOL WINAPI GetCommState(HANDLE port, LPDCB state) noexcept;
BOOL WINAPI SetCommState(HANDLE port, LPDCB state) noexcept;
BOOL WINAPI WriteFile(HANDLE port, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) noexcept;
}
