#pragma once

// Error codes and their texts. Each thread has its own last error.

#include "platform/standin/Types.h"

inline constexpr LONG NO_ERROR = 0;
inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_INVALID_FUNCTION = 1;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_INVALID_DATA = 13;
inline constexpr LONG ERROR_OUTOFMEMORY = 14;
inline constexpr LONG ERROR_NO_MORE_FILES = 18;
inline constexpr LONG ERROR_WRITE_FAULT = 29;
inline constexpr LONG ERROR_GEN_FAILURE = 31;
inline constexpr LONG ERROR_SHARING_VIOLATION = 32;
inline constexpr LONG ERROR_NOT_SUPPORTED = 50;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_CALL_NOT_IMPLEMENTED = 120;
inline constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr LONG ERROR_INVALID_NAME = 123;
inline constexpr LONG ERROR_MOD_NOT_FOUND = 126;
inline constexpr LONG ERROR_PROC_NOT_FOUND = 127;
inline constexpr LONG ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_NOT_OWNER = 288;
inline constexpr LONG ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr LONG ERROR_INVALID_FLAGS = 1004;
inline constexpr LONG ERROR_NO_UNICODE_TRANSLATION = 1113;
inline constexpr LONG ERROR_UNKNOWN_REVISION = 1305;
inline constexpr LONG ERROR_INVALID_SECURITY_DESCR = 1338;
inline constexpr LONG ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr LONG ERROR_INVALID_MENU_HANDLE = 1401;
inline constexpr LONG ERROR_INVALID_ACCEL_HANDLE = 1403;
inline constexpr LONG ERROR_TLW_WITH_WSCHILD = 1406;
inline constexpr LONG ERROR_WINDOW_OF_OTHER_THREAD = 1408;
inline constexpr LONG ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr LONG ERROR_CLASS_DOES_NOT_EXIST = 1411;
inline constexpr LONG ERROR_CLASS_HAS_WINDOWS = 1412;
inline constexpr LONG ERROR_INVALID_INDEX = 1413;
inline constexpr LONG ERROR_CONTROL_ID_NOT_FOUND = 1421;
inline constexpr LONG ERROR_MENU_ITEM_NOT_FOUND = 1456;
inline constexpr LONG ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr LONG ERROR_RESOURCE_LANG_NOT_FOUND = 1815;

inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x00000200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x00001000;

extern "C" {

DWORD WINAPI GetLastError() noexcept;
void WINAPI SetLastError(DWORD code) noexcept;

/// Copies the system's English text for an error code to the buffer. Returns the text's length, or 0 on failure.
/// Refuses other sources of texts, and ignores `arguments`.
DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD code, DWORD language, LPSTR buffer, DWORD size,
                            void* arguments) noexcept;
}
