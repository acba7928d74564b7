#include "platform/standin/System.h"

#include "platform/standin/Refuse.h"

using eq::standin::refuse;

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version) noexcept {
    if (version->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA)) return refuse(ERROR_INSUFFICIENT_BUFFER);
    // The Windows version for which the Windows builds are compiled.
    *version = {sizeof(OSVERSIONINFOA), 6, 1, 7601, VER_PLATFORM_WIN32_NT, {}};
    return TRUE;
}

BOOL WINAPI InitializeSecurityDescriptor(PSECURITY_DESCRIPTOR descriptor, DWORD revision) noexcept {
    if (revision != SECURITY_DESCRIPTOR_REVISION) return refuse(ERROR_UNKNOWN_REVISION);
    *static_cast<SECURITY_DESCRIPTOR*>(descriptor) = {
        SECURITY_DESCRIPTOR_REVISION, 0, 0, nullptr, nullptr, nullptr, nullptr};
    return TRUE;
}

BOOL WINAPI SetSecurityDescriptorDacl(PSECURITY_DESCRIPTOR descriptor, BOOL present, PACL dacl,
                                      BOOL defaulted) noexcept {
    auto& target = *static_cast<SECURITY_DESCRIPTOR*>(descriptor);
    if (target.Revision != SECURITY_DESCRIPTOR_REVISION) return refuse(ERROR_UNKNOWN_REVISION);

    if (!present) {
        target.Control = static_cast<WORD>(target.Control & ~SE_DACL_PRESENT);
        return TRUE;
    }
    target.Control = static_cast<WORD>((target.Control & ~SE_DACL_DEFAULTED) | SE_DACL_PRESENT |
                                       (defaulted ? SE_DACL_DEFAULTED : 0));
    target.Dacl = dacl;
    return TRUE;
}
