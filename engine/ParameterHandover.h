#pragma once

#include <atomic>
#include <cstdint>

#include "engine/FilterDesign.h"

/// Hands the newest parameter array from any number of writing threads to one reading thread.
///
/// A writer claims a free slot, fills it and makes it the latest in one exchange; the reader takes the latest in
/// another. So an array is never seen by halves, and the newest complete one wins:
///
///     free slots --claim--> being written --publish--> latest --take--> being read --> free slots
///                                                        |
///                                                        +-- replaced by a newer one --> free slots
///
/// `take` is wait-free. `put` is lock-free while fewer than 30 threads are in it at once.
class ParameterHandover {
public:
    void put(const float* values) noexcept;

    /// Whether an array waits to be taken.
    [[nodiscard]] bool pending() const noexcept { return latest.load(std::memory_order_acquire) != None; }

    /// Copies the waiting array to `values` and gives true, or gives false when none waits.
    bool take(float (&values)[ParameterCount]) noexcept;

    /// Drops a waiting array.
    void clear() noexcept;

private:
    static constexpr int SlotCount = 32;
    static constexpr int None = -1;

    int claim() noexcept;
    void release(int slot) noexcept;

    float slots[SlotCount][ParameterCount] = {};
    std::atomic<std::uint32_t> freeSlots{0xFFFFFFFFU}; // a bit for each slot that nobody uses
    std::atomic<int> latest{None};
};
