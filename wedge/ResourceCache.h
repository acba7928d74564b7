#pragma once

#include "platform/Owners.h"
#include "platform/win32.h"
#include "wedge/CountedBlock.h"

#include <cstdint>
#include <functional>
#include <map>

/// The resources that have been examined, each with the block that stands in for it, if it needed one. There is one
/// cache in a process. An entry lives as long as the library, so that what LoadResource gave out stays valid.
///
/// The cache's lock is taken ahead of the language store's, never after it.
class ResourceCache {
public:
    ResourceCache() { CountedBlockRef::prepare(); }

    /// The process's cache.
    static ResourceCache& instance() noexcept;

    /// Examines a resource that has just been found, unless it was examined before, and gives back `hResInfo`. `type`
    /// is the number of its type. A resource that cannot be rewritten stays as it is, and its next find tries again.
    HRSRC Prepare(HMODULE module, HRSRC hResInfo, std::uintptr_t type) noexcept;

    /// The block that stands in for a resource, or null.
    [[nodiscard]] void* Find(HRSRC hResInfo) noexcept;

private:
    std::map<HRSRC, CountedBlockRef, std::less<>> m_entries;
    platform::CriticalSection m_lock;
};
