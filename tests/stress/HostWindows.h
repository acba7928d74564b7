#pragma once

#include <cstddef>

namespace eq {

/// A host's windows. On Windows they are part of the program. The stand-in's windows live in the library that it is
/// part of, so on Linux they come from a further export of a library that is made for this test.
struct HostWindows {
    void* (*make)(); ///< hidden; also readies the common controls
    void (*destroy)(void* window);
    int (*children)(void* window);
    std::size_t (*all)() noexcept = nullptr; ///< on Linux
    void (*pump)();
};
extern "C" const HostWindows* hostWindows();

} // namespace eq
