#pragma once

// The system's version, and security descriptors, which the stand-in does not enforce.

#include "platform/standin/Types.h"

inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;
inline constexpr DWORD SECURITY_DESCRIPTOR_REVISION = 1;

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize; // must be set to the size of this record
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
};
using LPOSVERSIONINFOA = OSVERSIONINFOA*;
static_assert(sizeof(OSVERSIONINFOA) == 148);

using PACL = struct ACL*;
using PSECURITY_DESCRIPTOR = void*;

struct SECURITY_DESCRIPTOR {
    BYTE Revision;
    BYTE Sbz1;
    WORD Control;
    void* Owner;
    void* Group;
    PACL Sacl;
    PACL Dacl;
};

inline constexpr WORD SE_DACL_PRESENT = 0x0004;
inline constexpr WORD SE_DACL_DEFAULTED = 0x0008;

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

extern "C" {

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version) noexcept;
BOOL WINAPI InitializeSecurityDescriptor(PSECURITY_DESCRIPTOR descriptor, DWORD revision) noexcept;
BOOL WINAPI SetSecurityDescriptorDacl(PSECURITY_DESCRIPTOR descriptor, BOOL present, PACL dacl,
                                      BOOL defaulted) noexcept;
}
