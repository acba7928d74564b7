#include "support/Mutex_Win32Impl.h"

#include "tests/support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

/// A lock whose system mutex a test can see and break.
class ProbedMutex : public Mutex {
public:
    /// Whether another thread could take the system's mutex now.
    [[nodiscard]] bool isFree() const {
        bool taken = false;
        std::thread([&] {
            taken = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
            if (taken) ReleaseMutex(handle);
        }).join();
        return taken;
    }

    void breakSystemMutex() {
        CloseHandle(handle);
        handle = nullptr;
    }
};

} // namespace

TEST(Mutex, ReleasesTheSystemsMutexWithItsHoldersLastUnlock) {
    ProbedMutex mutex;
    for (int i = 0; i < 3; ++i) mutex.Lock();
    for (int i = 0; i < 3; ++i) {
        std::thread([&] { EXPECT_NO_THROW(mutex.Unlock()); }).join();
        EXPECT_FALSE(mutex.isFree());
        mutex.Unlock();
    }
    EXPECT_TRUE(mutex.isFree());
    mutex.Unlock();
    mutex.Lock();
    EXPECT_FALSE(mutex.isFree());
}

TEST(Mutex, LetsOneThreadInAtATime) {
    Mutex mutex;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 500; ++round) {
                const MutexEntry outer(mutex);
                const MutexEntry inner(mutex);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(count, 4 * 500);
}

TEST(Mutex, GoesOnWorkingAfterItsHolderDied) {
    ProbedMutex mutex;
    for (int i = 0; i < 2; ++i) {
        std::thread([&mutex] { mutex.Lock(); }).join();
        mutex.Lock();
        EXPECT_FALSE(mutex.isFree());
        mutex.Unlock();
        EXPECT_TRUE(mutex.isFree());
    }
}

TEST(Mutex, TellsOfSystemCallsThatFail) {
    ProbedMutex unlocked;
    unlocked.breakSystemMutex();
    EXPECT_EQ(failureOf<Mutex::lock_failure>([&] { unlocked.Lock(); }),
              "Mutex::Lock()[wedge/Mutex_Win32Impl, N] threw exception lock_failure, with context: "
              "Error: WaitForSingleObject returned WAIT_FAILED error 6");

    ProbedMutex locked;
    locked.Lock();
    locked.breakSystemMutex();
    EXPECT_EQ(failureOf<Mutex::unlock_failure>([&] { locked.Unlock(); }),
              "Mutex::Unlock()[wedge/Mutex_Win32Impl, N] threw exception unlock_failure, with context: "
              "Error: ReleaseMutex returned false.");
    EXPECT_NO_THROW(locked.Unlock()) << "the failed Unlock left the lock held";

    ProbedMutex leftLocked; // its destructor keeps the failure to itself
    leftLocked.Lock();
    leftLocked.breakSystemMutex();
}
