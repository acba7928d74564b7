#include "platform/standin/Memory.h"

#include <cstdlib>

LPVOID WINAPI CoTaskMemAlloc(SIZE_T size) noexcept {
    // A block of 0 bytes has an address, too.
    return std::malloc(size == 0 ? 1 : size);
}

void WINAPI CoTaskMemFree(LPVOID block) noexcept {
    std::free(block);
}
