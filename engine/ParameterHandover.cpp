#include "engine/ParameterHandover.h"

#include <algorithm>
#include <bit>

namespace eq {

void ParameterHandover::put(const float* values, std::uint32_t number) noexcept {
    const unsigned slot = claim();
    std::copy_n(values, ParameterCount, slots[slot]);
    const Ticket own = number << SlotBits | slot;
    Ticket waiting = latest.load(std::memory_order_acquire);
    do {
        if (slotOf(waiting) != NoSlot && isOlder(own, waiting)) return release(slot);
    } while (!latest.compare_exchange_weak(waiting, own, std::memory_order_acq_rel, std::memory_order_acquire));
    release(slotOf(waiting));
}

bool ParameterHandover::take(float (&values)[ParameterCount]) noexcept {
    const Ticket taken = latest.exchange(NoSlot, std::memory_order_acq_rel);
    if (slotOf(taken) == NoSlot) return false;
    const bool isNew = !isSuperseded(taken);
    if (isNew) {
        std::copy_n(slots[slotOf(taken)], ParameterCount, values);
        newestTaken = taken;
    }
    release(slotOf(taken));
    return isNew;
}

void ParameterHandover::clear() noexcept {
    release(slotOf(latest.exchange(NoSlot, std::memory_order_acq_rel)));
}

unsigned ParameterHandover::claim() noexcept {
    std::uint32_t available = freeSlots.load(std::memory_order_relaxed);
    for (;;) {
        const auto slot = static_cast<unsigned>(std::countr_zero(available));
        if (slot >= SlotCount) { // other writers hold every slot for the moment
            available = freeSlots.load(std::memory_order_relaxed);
            continue;
        }
        const std::uint32_t without = available & ~(1U << slot);
        if (freeSlots.compare_exchange_weak(available, without, std::memory_order_acquire, std::memory_order_relaxed)) {
            return slot;
        }
    }
}

void ParameterHandover::release(unsigned slot) noexcept {
    if (slot != NoSlot) freeSlots.fetch_or(1U << slot, std::memory_order_release);
}

} // namespace eq
