#include "engine/ParameterHandover.h"

#include <algorithm>
#include <bit>

void ParameterHandover::put(const float* values) noexcept {
    const int slot = claim();
    std::copy_n(values, ParameterCount, slots[slot]);
    release(latest.exchange(slot, std::memory_order_acq_rel));
}

bool ParameterHandover::take(float (&values)[ParameterCount]) noexcept {
    const int slot = latest.exchange(None, std::memory_order_acq_rel);
    if (slot == None) return false;
    std::copy_n(slots[slot], ParameterCount, values);
    release(slot);
    return true;
}

void ParameterHandover::clear() noexcept {
    release(latest.exchange(None, std::memory_order_acq_rel));
}

int ParameterHandover::claim() noexcept {
    std::uint32_t available = freeSlots.load(std::memory_order_relaxed);
    for (;;) {
        const int slot = std::countr_zero(available);
        if (slot == SlotCount) { // every slot is in another writer's hands for the moment
            available = freeSlots.load(std::memory_order_relaxed);
            continue;
        }
        const std::uint32_t without = available & ~(1U << slot);
        if (freeSlots.compare_exchange_weak(available, without, std::memory_order_acquire, std::memory_order_relaxed)) {
            return slot;
        }
    }
}

void ParameterHandover::release(int slot) noexcept {
    if (slot != None) freeSlots.fetch_or(1U << slot, std::memory_order_release);
}
