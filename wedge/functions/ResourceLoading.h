#pragma once

#include "platform/win32.h"
#include "wedge/resources/ResourceFormats.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace eq {

/// A resource's bytes, valid until the library unloads.
struct LockedResource {
    const void* bytes;
    std::size_t size; ///< what may be read
};

/// A resource in the store's language as the wedge gives it, or nothing. Throws the exceptions of the language store.
[[nodiscard]] std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCSTR name);
[[nodiscard]] std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCWSTR name);

/// The same for those who hand the bytes to the system.
[[nodiscard]] const void* LoadLockedResourceA(HMODULE hModule, ResourceType type, LPCSTR name);
[[nodiscard]] const void* LoadLockedResourceW(HMODULE hModule, ResourceType type, LPCWSTR name);

/// A string by its id, or null if there is no such string. Both forms have an end; a string of no characters is empty.
/// The 8-bit form is in the language's code page, with "?" for what that cannot hold.
[[nodiscard]] std::unique_ptr<char[]> LoadResourceStringA(HMODULE module, UINT id);
[[nodiscard]] std::unique_ptr<wchar_t[]> LoadResourceStringW(HMODULE module, UINT id);

} // namespace eq
