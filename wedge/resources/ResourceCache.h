#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"
#include "wedge/resources/CountedBlock.h"

#include <cstdint>
#include <functional>
#include <map>

namespace eq {

/// The resources that have been examined, each with the block that replaces its bytes, or with no block if none is
/// needed. An entry lives as long as the cache, so a pointer that LoadResource returned stays valid.
///
/// The cache's lock is taken before the language store's lock.
class ResourceCache {
public:
    /// The index owns the blocks and must outlive the cache.
    explicit ResourceCache(CountedBlockIndex& blocks) noexcept : m_blocks(blocks) {}

    /// Examines a resource that has just been found, unless the cache already has it. Returns `hResInfo` in every case.
    /// `type` is the number of the resource's type. A resource that cannot be rewritten stays in its compiled form, and
    /// the next call tries again.
    HRSRC Prepare(HMODULE module, HRSRC hResInfo, std::uintptr_t type) noexcept;

    /// Returns the block that replaces a resource, or null.
    [[nodiscard]] void* Find(HRSRC hResInfo) noexcept;

private:
    CountedBlockIndex& m_blocks;
    std::map<HRSRC, CountedBlockRef, std::less<>> m_entries;
    CriticalSection m_lock;
};

} // namespace eq
