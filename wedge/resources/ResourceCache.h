#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"
#include "wedge/resources/CountedBlock.h"

#include <cstdint>
#include <functional>
#include <map>

namespace eq {

/// The resources that have been examined, each with the block that replaces its bytes, if it needs one. An entry lives
/// as long as the cache, so that a pointer that LoadResource returned stays valid.
///
/// The cache's lock is taken before the language store's lock.
class ResourceCache {
public:
    /// The index owns the blocks and must outlive the cache.
    explicit ResourceCache(CountedBlockIndex& blocks) noexcept : m_blocks(blocks) {}

    /// Examines a resource that has just been found, unless it was examined before, and gives back `hResInfo`. `type`
    /// is the number of its type. A resource that cannot be rewritten stays as it is, and its next find tries again.
    HRSRC Prepare(HMODULE module, HRSRC hResInfo, std::uintptr_t type) noexcept;

    /// The block that stands in for a resource, or null.
    [[nodiscard]] void* Find(HRSRC hResInfo) noexcept;

private:
    CountedBlockIndex& m_blocks;
    std::map<HRSRC, CountedBlockRef, std::less<>> m_entries;
    CriticalSection m_lock;
};

} // namespace eq
