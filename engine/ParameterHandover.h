#pragma once

#include "engine/FilterDesign.h"

#include <atomic>
#include <cstdint>

/// Hands the newest parameter array from any number of writing threads to one reading thread.
///
/// A writer claims a free slot, fills it and publishes it as the latest array; the reader takes the latest array in one
/// exchange. The reader never sees a half-written array, and the newest complete array wins:
///
///     free slots --claim--> being written --publish--> latest --take--> being read --> free slots
///                                |                       |
///                                |                       +-- replaced by a newer array --> free slots
///                                +-- older than the latest ------------------------------> free slots
///
/// Each array has the number of the change after which its writer read the values. An array with a higher number
/// contains every change of an array with a lower number, so the hand-over keeps the higher number. A writer that is
/// delayed therefore never replaces a newer array, and needs no second pass.
///
/// `take` is wait-free. `put` is lock-free while fewer than 30 threads are in it together: each retry means that
/// another thread published or took an array.
class ParameterHandover {
public:
    /// Returns the number of a change whose values are stored already. A writer calls this after it stored its values
    /// and before it reads the array. Numbers wrap around: a writer must not be delayed by more than 2^26 changes.
    [[nodiscard]] std::uint32_t announce() noexcept { return changes.fetch_add(1, std::memory_order_acq_rel) + 1; }

    /// Publishes an array that was read after the change `number`, unless a newer array waits already.
    void put(const float* values, std::uint32_t number) noexcept;

    /// Returns whether an array waits to be taken.
    [[nodiscard]] bool pending() const noexcept { return slotOf(latest.load(std::memory_order_acquire)) != NoSlot; }

    /// Copies the waiting array to `values` and returns true. Returns false if no array waits, or if a newer array was
    /// taken before.
    bool take(float (&values)[ParameterCount]) noexcept;

    /// Drops a waiting array.
    void clear() noexcept;

private:
    /// An array's number in the upper 27 bits and its slot in the lower 5 bits, so that one exchange moves both.
    using Ticket = std::uint32_t;

    static constexpr unsigned SlotBits = 5;
    static constexpr unsigned SlotCount = 31;
    static constexpr unsigned NoSlot = 31;

    static constexpr unsigned slotOf(Ticket ticket) noexcept { return ticket & NoSlot; }
    static constexpr bool isOlder(Ticket ticket, Ticket other) noexcept {
        return static_cast<std::int32_t>((ticket >> SlotBits << SlotBits) - (other >> SlotBits << SlotBits)) < 0;
    }

    unsigned claim() noexcept;
    void release(unsigned slot) noexcept;

    float slots[SlotCount][ParameterCount] = {};
    std::atomic<std::uint32_t> freeSlots{0x7FFFFFFFU}; // one bit per slot that no thread uses
    std::atomic<Ticket> latest{NoSlot};
    std::atomic<std::uint32_t> changes{0};
    Ticket newestTaken = 0; // the reader's own
};
