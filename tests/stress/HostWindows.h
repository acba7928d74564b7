#pragma once

#include <cstddef>

namespace eq {

/// The windows of a host. On Windows this program creates them. On Linux the stand-in is a part of the library, and its
/// windows exist there only. A library that is built for this test therefore exports these functions.
struct HostWindows {
    void* (*make)(); ///< makes a hidden window, and registers the common controls
    void (*destroy)(void* window);
    int (*children)(void* window);
    std::size_t (*all)() noexcept = nullptr; ///< the number of windows; null on Windows
    void (*pump)();
};
extern "C" const HostWindows* hostWindows();

} // namespace eq
