#pragma once

#ifdef _WIN32
#include "platform/win32.h"

#include <array>
#else
#include "tests/support/AllocationCounter.h"
#endif

namespace eq {

/// Returns the heap memory that this process uses: in bytes on Windows, in blocks elsewhere. Only the difference of two
/// results has a meaning. Loaded libraries count too.
inline long heapInUse() {
#ifdef _WIN32
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    long bytes = 0;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += static_cast<long>(entry.cbData);
        }
    }
    return bytes;
#else
    // A loaded library allocates through the program's `new` and `delete`.
    return allocations::live;
#endif
}

} // namespace eq
