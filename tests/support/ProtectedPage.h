#pragma once

#include "platform/win32.h"

#ifndef _WIN32
#include <sys/mman.h>
#endif

#include <cstddef>
#include <string_view>

namespace eq {

/// Returns a copy of the bytes that ends where a page without access begins, so that a read beyond the end stops the
/// process. The copy is valid until the next call. At most 1 MiB fits.
inline const char* beforeProtectedPage(std::string_view bytes) {
    constexpr std::size_t Room = 1U << 20U;
    constexpr std::size_t Page = 4096;
    static char* const end = [] {
#ifdef _WIN32
        auto* const memory =
            static_cast<char*>(VirtualAlloc(nullptr, Room + Page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD before = 0;
        VirtualProtect(memory + Room, Page, PAGE_NOACCESS, &before);
#else
        auto* const memory =
            static_cast<char*>(mmap(nullptr, Room + Page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(memory + Room, Page, PROT_NONE);
#endif
        return memory + Room;
    }();
    bytes.copy(end - bytes.size(), bytes.size());
    return end - bytes.size();
}

} // namespace eq
