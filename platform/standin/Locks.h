#pragma once

// Critical sections, and mutexes with their handles.

#include "platform/standin/System.h"
#include "platform/standin/Types.h"

/// A re-entrant lock. The caller initialises it before its first use and deletes it after its last use.
struct CRITICAL_SECTION {
    void* lock;
};
using LPCRITICAL_SECTION = CRITICAL_SECTION*;

inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_ABANDONED = 128;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

extern "C" {

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section);
void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section) noexcept;
void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section);
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section) noexcept;

/// Creates an unnamed mutex. A name is refused, because processes do not share mutexes here.
HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initialOwner, LPCSTR name) noexcept;
BOOL WINAPI ReleaseMutex(HANDLE mutex) noexcept;
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) noexcept;

/// Closes a mutex or a serial port.
BOOL WINAPI CloseHandle(HANDLE object) noexcept;

DWORD WINAPI GetCurrentThreadId() noexcept;
}
