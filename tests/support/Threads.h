#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace eq {

/// Calls `work(i)` for each `i` from 0 to `count` - 1, each on its own thread. The calls start together. Returns when
/// all calls have returned.
template <typename Work>
void onThreads(int count, const Work& work) {
    std::atomic<int> missing = count;
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&missing, &work, i] {
            for (--missing; missing > 0;) std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

} // namespace eq
