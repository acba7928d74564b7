#pragma once

#include "platform/win32.h"
#include "wedge/resources/PrepStatus.h"

#include <cstddef>
#include <cstdint>
#include <memory>

// The rewriters of resources that are no templates. Each makes a new block if there is something to translate; the
// caller owns it on PrepReplaced. None reads beyond `size` bytes or throws; the forms without a size are bounded by
// TemplateRange.

namespace eq {

/// A bundle of 16 strings. If one has a key, all come out as they came through the language's code page.
PrepStatus PrepareStringResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareStringResource(const void* pResource, void** ppNewResource) noexcept;

/// An accelerator table. The translation of an entry is found by its flags and key code, and is a tag.
PrepStatus PrepareAcceleratorResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareAcceleratorResource(const void* pResource, void** ppNewResource) noexcept;

/// Dialog initialisation data: the texts that fill combo boxes. Records follow each other without padding. A text ends
/// at its terminator or at the end of its data, whichever comes first.
PrepStatus PrepareDialogInitResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept;
PrepStatus PrepareDialogInitResource(const void* pResource, void** ppNewResource) noexcept;

/// The table of a resource in the form that creates one, with its length in `*count` unless that is null. Null for null
/// and for a table that has no end within its size. Every byte of the array is set.
[[nodiscard]] std::unique_ptr<ACCEL[]> ToAccelArray(const void* entries, std::size_t size, std::uint32_t* count);

} // namespace eq
