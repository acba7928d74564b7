// Replaces the global operators `new` and `delete` for the whole program.

#include "tests/support/AllocationCounter.h"

void* operator new(std::size_t size) {
    return eq::allocations::takeOrThrow(size);
}
void* operator new[](std::size_t size) {
    return eq::allocations::takeOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return eq::allocations::take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return eq::allocations::take(size);
}
void operator delete(void* block) noexcept {
    eq::allocations::release(block);
}
void operator delete[](void* block) noexcept {
    eq::allocations::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    eq::allocations::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    eq::allocations::release(block);
}
