#include "platform/win32.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/LoadedLibrary.h"

#include <gtest/gtest.h>

namespace eq {

namespace {

/// Returns the growth of the heap by a hundred loads of the library. With `work`, each load also opens resources.
long leftByAHundredLoads(bool work) {
    constexpr int WarmUp = 5; // during these loads, the system makes the allocations that it keeps
    long before = 0;
    for (int turn = 0; turn < WarmUp + 100; ++turn) {
        if (turn == WarmUp) before = heapInUse();
        const LoadedLibrary library(EQ_WEDGE_LIBRARY);
        const auto open = library.find<bool (*)()>("openOneOfEach");
        EXPECT_TRUE((!work && turn >= WarmUp) || open());
    }
    return heapInUse() - before;
}

} // namespace

TEST(WedgeLibrary, LeaksNothingWhenItIsUnloadedAHundredTimes) {
    const long idle = leftByAHundredLoads(false);
#ifdef _WIN32
    // The compiler's thread library keeps about 800 bytes per load in 32-bit code, and about 1600 bytes in 64-bit code.
    constexpr long MostIdle = 100L * 256 * sizeof(void*);
    constexpr long Most = 5000; // less than one block per load; the system's own heap may grow by a page
#else
    constexpr long MostIdle = 100;
    constexpr long Most = 100;
#endif
    EXPECT_LT(idle, MostIdle);
    EXPECT_LT(leftByAHundredLoads(true) - idle, Most);
}

} // namespace eq
