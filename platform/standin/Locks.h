#pragma once

// Critical sections, mutexes, and the handles that own them.

#include "platform/standin/System.h"
#include "platform/standin/Types.h"

/// Re-entrant. Must be initialised before its first use and deleted after its last.
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

/// Unnamed mutexes only: a name is refused, since nothing is shared with other processes.
HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initialOwner, LPCSTR name) noexcept;
BOOL WINAPI ReleaseMutex(HANDLE mutex) noexcept;
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) noexcept;

/// Closes a mutex or a serial port.
BOOL WINAPI CloseHandle(HANDLE object) noexcept;

DWORD WINAPI GetCurrentThreadId() noexcept;
}
