#include "support/Mutex.h"

#include "tests/support/FailureText.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace eq {

namespace {

/// A lock whose system mutex a test can probe and break.
class ProbedMutex : public Mutex {
public:
    /// Returns whether another thread can acquire the system's mutex now.
    [[nodiscard]] bool isFree() const {
        bool taken = false;
        onThreads(1, [&](int) {
            taken = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
            if (taken) ReleaseMutex(handle);
        });
        return taken;
    }

    using Mutex::handle;
};

} // namespace

TEST(Mutex, ReleasesTheSystemsMutexAtTheLastUnlockEvenIfThePreviousHolderDied) {
    ProbedMutex mutex;
    onThreads(1, [&](int) { mutex.Lock(); });
    for (int i = 0; i < 2; ++i) mutex.Lock();
    for (int i = 0; i < 2; ++i) {
        onThreads(1, [&](int) { EXPECT_NO_THROW(mutex.Unlock()); });
        EXPECT_FALSE(mutex.isFree());
        mutex.Unlock();
    }
    EXPECT_TRUE(mutex.isFree());
    mutex.Unlock();
    mutex.Lock();
    EXPECT_FALSE(mutex.isFree());
}

TEST(Mutex, IsUnlockedWhenItIsDestroyed) {
    auto mutex = std::make_unique<ProbedMutex>();
    mutex->Lock();
    EXPECT_NO_THROW(mutex->Unlock());
    mutex->Lock();
    std::atomic<bool> starts = false;
    DWORD result = WAIT_TIMEOUT;
    std::thread waiting([&, system = mutex->handle] {
        starts = true;
        result = WaitForSingleObject(system, 500);
    });
    while (!starts) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // a wait that starts later fails immediately
    mutex.reset();
    waiting.join();
    EXPECT_NE(result, DWORD{WAIT_TIMEOUT});
}

TEST(Mutex, ReportsSystemCallsThatFail) {
    ProbedMutex mutex;
    mutex.Lock();
    CloseHandle(std::exchange(mutex.handle, nullptr));
    EXPECT_EQ(failureOf<Mutex::unlock_failure>([&] { mutex.Unlock(); }),
              "Mutex::Unlock()[wedge/Mutex_Win32Impl, N] threw exception unlock_failure, with context: "
              "Error: ReleaseMutex returned false.");
    EXPECT_NO_THROW(mutex.Unlock()) << "the failed Unlock left the lock held";
    EXPECT_EQ(failureOf<Mutex::lock_failure>([&] { mutex.Lock(); }),
              "Mutex::Lock()[wedge/Mutex_Win32Impl, N] threw exception lock_failure, with context: "
              "Error: WaitForSingleObject returned WAIT_FAILED error 6");
}

} // namespace eq
