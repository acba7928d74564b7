#pragma once

// Counts what the program allocates by new, and makes it fail on demand. Replaces the global operators, so exactly one
// source of a program includes this.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace allocations {

inline std::atomic<long> live = 0;         // blocks not yet released
inline std::atomic<std::size_t> asked = 0; // bytes that were asked for, in all
inline std::atomic<long> leftToGrant = -1; // how many more succeed; all, if negative

/// Lets `count` allocations succeed, and none after them, until the end of its own life.
class Shortage {
public:
    explicit Shortage(long count = 0) { leftToGrant = count; }
    ~Shortage() { leftToGrant = -1; }
    Shortage(const Shortage&) = delete;
    Shortage& operator=(const Shortage&) = delete;
};

inline void* take(std::size_t size) noexcept {
    asked += size;
    if (leftToGrant == 0) return nullptr;
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

void* operator new(std::size_t size) {
    return allocations::takeOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocations::takeOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocations::take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocations::take(size);
}
void operator delete(void* block) noexcept {
    allocations::release(block);
}
void operator delete[](void* block) noexcept {
    allocations::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    allocations::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    allocations::release(block);
}
