#pragma once

#include "platform/win32.h"
#include "wedge/resources/ResourceFormats.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace eq {

/// The bytes of a resource. The pointer is valid until the library is unloaded.
struct LockedResource {
    const void* bytes;
    std::size_t size; ///< the number of bytes that may be read
};

/// Returns a resource in the store's language, rewritten if it has something to translate. Returns nothing if there is
/// no such resource. Throws the exceptions of the language store.
[[nodiscard]] std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCSTR name);
[[nodiscard]] std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCWSTR name);

/// Returns the bytes that `lockResource` returns, without their size, or null if there is no such resource. System
/// functions accept the bytes in this form. Throws like `lockResource`.
[[nodiscard]] const void* LoadLockedResourceA(HMODULE hModule, ResourceType type, LPCSTR name);
[[nodiscard]] const void* LoadLockedResourceW(HMODULE hModule, ResourceType type, LPCWSTR name);

/// Returns a string by its id, or null if there is no such string. Both forms have a terminator; a string without
/// characters is an empty text. The 8-bit form is in the language's code page, with "?" for characters that the code
/// page lacks.
[[nodiscard]] std::unique_ptr<char[]> LoadResourceStringA(HMODULE module, UINT id);
[[nodiscard]] std::unique_ptr<wchar_t[]> LoadResourceStringW(HMODULE module, UINT id);

} // namespace eq
