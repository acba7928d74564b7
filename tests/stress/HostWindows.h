#pragma once

#include <cstddef>

namespace eq {

/// The functions that a host needs for its windows. On Windows this program contains the functions. On Linux the
/// stand-in is a part of the library, and only the library sees the stand-in's windows. A library that is built for
/// this test therefore exports the functions.
struct HostWindows {
    void* (*make)(); ///< makes a hidden window, and registers the common controls
    void (*destroy)(void* window);
    int (*children)(void* window);
    std::size_t (*all)() noexcept = nullptr; ///< the number of windows; null on Windows
    void (*pump)();
};
extern "C" const HostWindows* hostWindows();

} // namespace eq
