#pragma once

#include "platform/win32.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace eq {

/// A re-entrant lock that uses a system mutex. Recursive calls do not lock the system mutex again.
///
/// If a thread ends while it holds the lock, the next thread that waits receives the lock.
class Mutex {
public:
    class lock_failure;
    class unlock_failure;

    /// Aborts the process if the system cannot create a mutex.
    Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// Unlocks once, if the calling thread holds the lock. A lock that this thread has locked several times stays
    /// locked.
    virtual ~Mutex();

    /// Throws `lock_failure` if waiting fails repeatedly.
    void Lock();

    /// Unlocks once. Does nothing on a thread that does not hold the lock. Throws `unlock_failure` if the system
    /// refuses.
    void Unlock();

protected:
    // The system mutex, for derived classes.
    HANDLE handle;

private:
    static constexpr std::uint32_t NoThread = 0xFFFFFFFF;

    DWORD wait(DWORD milliseconds);
    bool releaseHolds();

    // Only the holder writes the owner and the recursion count. Another thread may read the owner, but never finds its
    // own id there.
    std::atomic<std::uint32_t> ownerThread{NoThread};
    std::uint32_t recursionCount = 0;

    // The number of times that the holder's waits have locked the system mutex. A wait that reports an ended holder
    // also locks the system mutex.
    std::uint32_t holds = 0;
};

class Mutex::lock_failure : public std::exception {
public:
    explicit lock_failure(const std::string& failure) : text(std::make_shared<const std::string>(failure)) {}
    [[nodiscard]] const char* what() const noexcept override { return text->c_str(); }

private:
    std::shared_ptr<const std::string> text; // shared, so that copies cannot throw
};

class Mutex::unlock_failure : public std::exception {
public:
    explicit unlock_failure(const std::string& failure) : text(std::make_shared<const std::string>(failure)) {}
    [[nodiscard]] const char* what() const noexcept override { return text->c_str(); }

private:
    std::shared_ptr<const std::string> text; // shared, so that copies cannot throw
};

/// Locks a `Mutex`, and unlocks it at the end of the scope. A failure to unlock is ignored.
class MutexEntry {
public:
    explicit MutexEntry(Mutex& held) : mutex(held) { mutex.Lock(); }
    MutexEntry(const MutexEntry&) = delete;
    MutexEntry& operator=(const MutexEntry&) = delete;
    ~MutexEntry();

private:
    Mutex& mutex;
};

} // namespace eq
