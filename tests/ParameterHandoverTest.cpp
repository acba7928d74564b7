#include "engine/ParameterHandover.h"

#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

namespace eq {

namespace {

void put(ParameterHandover& handover, float value) {
    float values[ParameterCount];
    std::fill_n(values, ParameterCount, value);
    handover.put(values, handover.announce());
}

} // namespace

TEST(ParameterHandover, ReturnsTheNewestArrayOnceAndLosesNoSlot) {
    ParameterHandover handover;
    float values[ParameterCount] = {};
    EXPECT_FALSE(handover.take(values));
    for (int i = 0; i < 100; ++i) {
        put(handover, 0);
        put(handover, static_cast<float>(i));
        EXPECT_TRUE(handover.pending());
        if (i % 2 != 0) handover.clear();
        EXPECT_EQ(handover.take(values), i % 2 == 0);
        EXPECT_EQ(values[0], static_cast<float>(i - i % 2));
        EXPECT_FALSE(handover.pending());
    }
}

TEST(ParameterHandover, KeepsTheArrayOfTheLaterChange) {
    ParameterHandover handover;
    float values[ParameterCount] = {};
    const float late[ParameterCount] = {-1};
    for (int i = 0; i < 100; ++i) {
        const std::uint32_t delayed = handover.announce();
        put(handover, static_cast<float>(i));
        handover.put(late, delayed);
        EXPECT_TRUE(handover.take(values));
        handover.put(late, delayed);
        EXPECT_FALSE(handover.pending());
        EXPECT_FALSE(handover.take(values));
        EXPECT_EQ(values[0], static_cast<float>(i));
    }
}

TEST(ParameterHandover, AcceptsArraysAfterItsNumbersHaveWrappedAround) {
    constexpr std::uint32_t Wrap = 1U << 27;  // the count of different numbers in a ticket
    constexpr std::uint32_t Limit = 1U << 20; // the largest delay of a writer
    for (const std::uint32_t before : {1U, Wrap / 2, Wrap - 1, 0xFFFFFFFFU})
        for (const std::uint32_t changes :
             {0U, 1U, Wrap / 2 - 1, Wrap / 2 + 1, Wrap - Limit - 1, Wrap - Limit, Wrap - 1}) {
            const bool isNew = changes < Wrap - Limit;
            float values[ParameterCount] = {};
            ParameterHandover handover;
            handover.put(values, before);
            EXPECT_TRUE(handover.take(values));
            handover.put(values, before + changes);
            EXPECT_EQ(handover.pending(), isNew);
            EXPECT_EQ(handover.take(values), isNew) << before << " " << changes;
        }
}

TEST(ParameterHandover, ReturnsOnlyCompleteArraysAndEachWritersArraysInOrder) {
    constexpr int WriterCount = 4;
    constexpr int Writes = 20000;
    ParameterHandover handover;
    std::atomic<int> running{WriterCount};
    bool lastRound = false;
    const auto write = [&](int writer) {
        for (int i = 0; i < Writes; ++i) put(handover, static_cast<float>(writer * Writes + i));
        --running;
    };
    const auto read = [&] {
        int newest[WriterCount] = {-1, -1, -1, -1};
        float values[ParameterCount] = {};
        for (bool ended = false; !ended;) {
            ended = running == 0;
            while (handover.take(values)) {
                ASSERT_TRUE(std::all_of(values, values + ParameterCount, [&](float v) { return v == values[0]; }));
                const int number = static_cast<int>(values[0]);
                ASSERT_GT(number % Writes, newest[number / Writes]);
                newest[number / Writes] = number % Writes;
                lastRound = number % Writes == Writes - 1;
            }
        }
    };
    onThreads(WriterCount + 1, [&](int i) { i < WriterCount ? write(i) : read(); });
    EXPECT_TRUE(lastRound) << "the last array is not the last array of its writer";
}

} // namespace eq
