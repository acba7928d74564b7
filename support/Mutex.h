#pragma once

#include "platform/win32.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace eq {

/// A re-entrant lock over a mutex of the system. The system's mutex is held once per holder, whatever the depth.
///
/// The lock outlives a thread that ends while holding it: the next thread to wait gets it.
class Mutex {
public:
    class lock_failure;
    class unlock_failure;

    /// Ends the process if the system has no mutex to give.
    Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// Gives the lock back once, if this thread holds it. A deeper recursion is not unwound.
    virtual ~Mutex();

    /// Throws `lock_failure` when waiting fails again and again.
    void Lock();

    /// Does nothing on a thread that does not hold the lock. Throws `unlock_failure` if the system refuses.
    void Unlock();

protected:
    // The system's mutex, for those who extend the class.
    HANDLE handle;

private:
    static constexpr std::uint32_t NoThread = 0xFFFFFFFF;

    DWORD wait(DWORD milliseconds);
    bool releaseHolds();

    // Only the holder writes these. Other threads read the owner, which is never their own id then.
    std::atomic<std::uint32_t> ownerThread{NoThread};
    std::uint32_t recursionCount = 0;

    // How often the holder's waits have taken the system's mutex: a wait that reports a dead holder takes it too.
    std::uint32_t holds = 0;
};

class Mutex::lock_failure : public std::exception {
public:
    explicit lock_failure(const std::string& failure) : text(std::make_shared<const std::string>(failure)) {}
    [[nodiscard]] const char* what() const noexcept override { return text->c_str(); }

private:
    std::shared_ptr<const std::string> text; // copies without throwing
};

class Mutex::unlock_failure : public std::exception {
public:
    explicit unlock_failure(const std::string& failure) : text(std::make_shared<const std::string>(failure)) {}
    [[nodiscard]] const char* what() const noexcept override { return text->c_str(); }

private:
    std::shared_ptr<const std::string> text; // copies without throwing
};

/// Holds a `Mutex` for the length of a scope. A failure to give it back is dropped.
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
