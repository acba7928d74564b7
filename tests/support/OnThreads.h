#pragma once

#include <cstddef>
#include <latch>
#include <thread>
#include <vector>

/// Does something on some threads at once, and tells each its number.
template <typename Work>
void onThreads(std::size_t count, const Work& work) {
    std::latch start(static_cast<std::ptrdiff_t>(count));
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            start.arrive_and_wait();
            work(number);
        });
    }
    for (std::thread& thread : threads) thread.join();
}
