#pragma once

// Counts what the program allocates by new, and makes it fail on demand, in programs that AllocationCounter.cpp is
// part of.

#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace eq {

namespace allocations {

inline std::atomic<long> live = 0;         // blocks not yet released
inline std::atomic<std::size_t> asked = 0; // bytes that were asked for, in all
inline std::atomic<long> leftToGrant = -1; // how many more succeed; all, if negative
inline std::atomic<long> leftToRefuse = 0; // how many fail after them

/// The bytes that `work` asks for.
template <typename Work>
std::size_t askedBy(const Work& work) {
    const std::size_t before = asked;
    work();
    return asked - before;
}

/// Lets `granted` allocations succeed and then refuses the next ones, until the end of its own life.
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

/// Does something again and again, each time with another one of its allocations refused, until it needs no more.
/// What it throws for want of memory is dropped.
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
