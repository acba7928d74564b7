#pragma once

// Counts the allocations of the program by `new`, and makes them fail on demand. The program must contain
// AllocationCounter.cpp.

#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace eq {

namespace allocations {

inline std::atomic<long> live = 0;         // blocks that are not yet released
inline std::atomic<std::size_t> asked = 0; // total number of requested bytes
inline std::atomic<long> leftToGrant = -1; // the number of further allocations that succeed; all if negative
inline std::atomic<long> leftToRefuse = 0; // the number of allocations that fail afterwards

/// Returns the number of bytes that `work` requests.
template <typename Work>
std::size_t askedBy(const Work& work) {
    const std::size_t before = asked;
    work();
    return asked - before;
}

/// Lets `granted` allocations succeed, then makes the next `refused` allocations fail, until this object is destroyed.
class Shortage {
public:
    explicit Shortage(long granted, long refused = LONG_MAX) {
        leftToRefuse = refused;
        leftToGrant = granted;
    }
    ~Shortage() { leftToGrant = -1; }
    Shortage(const Shortage&) = delete;
    Shortage& operator=(const Shortage&) = delete;
};

/// Repeats `work` and makes one allocation fail in each run: the first one in the first run, the second one in the
/// second run, and so on, until a run has no such allocation. Catches std::bad_alloc.
template <typename Work>
void refuseEachOf(const Work& work) {
    bool wasRefused = true;
    for (long granted = 0; wasRefused; ++granted) {
        const Shortage shortage(granted, 1);
        try {
            work();
        } catch (const std::bad_alloc&) {
        }
        wasRefused = leftToRefuse == 0;
    }
}

inline void* take(std::size_t size) noexcept {
    asked += size;
    if (leftToGrant == 0 && leftToRefuse > 0) {
        --leftToRefuse;
        return nullptr;
    }
    if (leftToGrant > 0) --leftToGrant;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block) ++live;
    return block;
}

inline void* takeOrThrow(std::size_t size) {
    if (void* const block = take(size)) return block;
    throw std::bad_alloc();
}

inline void release(void* block) noexcept {
    if (block) --live;
    std::free(block);
}

} // namespace allocations

} // namespace eq
