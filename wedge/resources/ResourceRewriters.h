#pragma once

#include "platform/win32.h"
#include "wedge/resources/PrepStatus.h"

#include <cstddef>
#include <cstdint>
#include <memory>

// The rewriters of the resources that are not templates. If a resource has something to translate, a rewriter sets
// `*ppNewResource` to a new block and returns PrepReplaced; the caller then owns the block. No rewriter throws, or
// reads more than `size` bytes. The functions without a size read at most TemplateRange bytes.

namespace eq {

/// Rewrites a bundle of 16 strings. If one string has a key, all strings of the bundle are converted to the language's
/// code page and back, and lose the characters that the code page lacks.
PrepStatus PrepareStringResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareStringResource(const void* pResource, void** ppNewResource) noexcept;

/// Rewrites an accelerator table. The flags and the key code of an entry select its translation, which is an
/// accelerator tag.
PrepStatus PrepareAcceleratorResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareAcceleratorResource(const void* pResource, void** ppNewResource) noexcept;

/// Rewrites dialog initialisation data: the texts that fill combo boxes. Records follow each other without padding. A
/// text ends at its terminator or at the end of its data, whichever comes first.
PrepStatus PrepareDialogInitResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareDialogInitResource(const void* pResource, void** ppNewResource) noexcept;

/// Returns the entries of an accelerator table in the form that the system's functions accept. `*count` receives the
/// number of entries, unless `count` is null. Returns null if `entries` is null or the table has no end mark within
/// `size` bytes. Every byte of the array is set, including the padding bytes.
[[nodiscard]] std::unique_ptr<ACCEL[]> ToAccelArray(const void* entries, std::size_t size, std::uint32_t* count);

} // namespace eq
