#pragma once

#include "engine/FilterDesign.h"

#include <atomic>
#include <cstdint>

namespace eq {

/// Hands the newest parameter array from any number of writing threads to one reading thread.
///
/// A writer claims a free slot, fills it and publishes it as the latest array; the reader takes the latest array in one
/// atomic exchange. The reader never sees a half-written array, and always gets the newest complete array:
///
///     free slots --claim--> being written --publish--> latest --take--> being read --> free slots
///                                |                       |
///                                |                       +-- replaced by a newer array --> free slots
///                                +-- older than the latest ------------------------------> free slots
///
/// The reader also drops an array that is older than the last array that it took.
///
/// Each array has the number of the change after which its writer read the values. An array with a higher number
/// contains every change of an array with a lower number, so the hand-over keeps the array with the higher number. A
/// writer that is delayed therefore never replaces a newer array, and needs no second pass.
///
/// `take` is wait-free. `put` is lock-free while fewer than 30 threads call it at the same time: each retry means that
/// another thread published or took an array.
class ParameterHandover {
public:
    /// Announces a change and returns its number. A writer calls `announce` after it has stored its values and before
    /// it reads the array. Numbers wrap around, so a writer must not be delayed by more than 2^20 changes.
    [[nodiscard]] std::uint32_t announce() noexcept { return changes.fetch_add(1, std::memory_order_acq_rel) + 1; }

    /// Publishes an array that was read after the change `number`, unless a newer array waits already.
    void put(const float* values, std::uint32_t number) noexcept;

    /// Returns whether an array waits to be taken. Only the reader may call this function.
    [[nodiscard]] bool pending() const noexcept {
        const Ticket waiting = latest.load(std::memory_order_acquire);
        return slotOf(waiting) != NoSlot && !isSuperseded(waiting);
    }

    /// Copies the waiting array to `values` and returns true. Returns false if no array waits, or if a newer array was
    /// taken before.
    bool take(float (&values)[ParameterCount]) noexcept;

    /// Drops a waiting array.
    void clear() noexcept;

private:
    /// An array's number in the upper 27 bits and its slot in the lower 5 bits, so that one atomic exchange replaces
    /// both.
    using Ticket = std::uint32_t;

    static constexpr unsigned SlotBits = 5;
    static constexpr unsigned SlotCount = 31;
    static constexpr unsigned NoSlot = 31;

    static constexpr unsigned slotOf(Ticket ticket) noexcept { return ticket & NoSlot; }
    /// Returns whether the number of `ticket` is one of the 2^20 numbers before the number of `other`. If the distance
    /// is larger, the numbers have wrapped around, because the reader has not taken an array for a long time.
    static constexpr bool isOlder(Ticket ticket, Ticket other) noexcept {
        const Ticket distance = ((other >> SlotBits) - (ticket >> SlotBits)) << SlotBits >> SlotBits;
        return distance != 0 && distance <= (1U << 20);
    }

    /// Returns whether the reader has taken a newer array.
    [[nodiscard]] bool isSuperseded(Ticket ticket) const noexcept {
        return slotOf(newestTaken) != NoSlot && isOlder(ticket, newestTaken);
    }

    unsigned claim() noexcept;
    void release(unsigned slot) noexcept;

    float slots[SlotCount][ParameterCount] = {};
    std::atomic<std::uint32_t> freeSlots{0x7FFFFFFFU}; // one bit per slot that no thread uses
    std::atomic<Ticket> latest{NoSlot};
    std::atomic<std::uint32_t> changes{0};
    Ticket newestTaken = NoSlot; // used by the reader only
};

} // namespace eq
