#include "platform/standin/Locks.h"

#include "platform/standin/KernelObject.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using eq::standin::refuse;

std::recursive_mutex& lockOf(LPCRITICAL_SECTION section) noexcept {
    return *static_cast<std::recursive_mutex*>(section->lock);
}

class MutexObject : public eq::standin::KernelObject {
public:
    /// Waits until the calling thread owns the mutex. A thread that already owns the mutex increases its depth instead.
    DWORD wait(DWORD milliseconds) {
        std::unique_lock guard(m_guard);
        if (m_owner == GetCurrentThreadId()) {
            ++m_depth;
            return WAIT_OBJECT_0;
        }
        if (!waitUntilFree(guard, milliseconds)) return WAIT_TIMEOUT;
        m_owner = GetCurrentThreadId();
        m_depth = 1;
        return std::exchange(m_abandoned, false) ? WAIT_ABANDONED : WAIT_OBJECT_0;
    }

    enum class Release { NotOwner, StillHeld, Free };

    Release release() noexcept {
        const std::lock_guard guard(m_guard);
        if (m_owner != GetCurrentThreadId()) return Release::NotOwner;
        if (--m_depth > 0) return Release::StillHeld;
        free();
        return Release::Free;
    }

    /// Frees the mutex after the end of its owner's thread. The next owner receives WAIT_ABANDONED.
    void abandon() noexcept {
        const std::lock_guard guard(m_guard);
        m_abandoned = true;
        free();
    }

private:
    bool waitUntilFree(std::unique_lock<std::mutex>& guard, DWORD milliseconds) {
        const auto isFree = [this] { return m_owner == Nobody; };
        if (milliseconds != INFINITE) return m_freed.wait_for(guard, std::chrono::milliseconds(milliseconds), isFree);
        m_freed.wait(guard, isFree);
        return true;
    }

    void free() noexcept {
        m_owner = Nobody;
        m_depth = 0;
        m_freed.notify_one();
    }

    static constexpr DWORD Nobody = 0;

    std::mutex m_guard;
    std::condition_variable m_freed;
    DWORD m_owner = Nobody;
    unsigned m_depth = 0;
    bool m_abandoned = false;
};

/// The mutexes that a thread holds. The end of the thread abandons them.
class HeldMutexes {
public:
    HeldMutexes() = default;
    HeldMutexes(const HeldMutexes&) = delete;
    HeldMutexes& operator=(const HeldMutexes&) = delete;
    ~HeldMutexes() {
        for (const auto& mutex : m_mutexes) mutex->abandon();
    }

    DWORD wait(const std::shared_ptr<MutexObject>& mutex, DWORD milliseconds) {
        m_mutexes.reserve(m_mutexes.size() + 1);
        const DWORD result = mutex->wait(milliseconds);
        if (result != WAIT_TIMEOUT && !holds(mutex)) m_mutexes.push_back(mutex);
        return result;
    }

    void forget(const std::shared_ptr<MutexObject>& mutex) noexcept { std::erase(m_mutexes, mutex); }

private:
    bool holds(const std::shared_ptr<MutexObject>& mutex) const noexcept {
        return std::find(m_mutexes.begin(), m_mutexes.end(), mutex) != m_mutexes.end();
    }

    std::vector<std::shared_ptr<MutexObject>> m_mutexes;
};

// This is a plain pointer, because static destructors use locks after the objects of the thread have been destroyed.
thread_local HeldMutexes* heldMutexesHere = nullptr;

struct AbandonAtThreadEnd {
    ~AbandonAtThreadEnd() { delete std::exchange(heldMutexesHere, nullptr); }
};

HeldMutexes& heldMutexes() {
    if (!heldMutexesHere) {
        heldMutexesHere = new HeldMutexes;
        [[maybe_unused]] thread_local const AbandonAtThreadEnd atThreadEnd;
    }
    return *heldMutexesHere;
}

} // namespace

namespace eq::standin {

HandleTable<KernelObject>& kernelHandles() {
    static HandleTable<KernelObject> table;
    return table;
}

} // namespace eq::standin

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section) {
    section->lock = new std::recursive_mutex;
}

void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section) noexcept {
    delete &lockOf(section);
    section->lock = nullptr;
}

void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section) {
    lockOf(section).lock();
}

void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section) noexcept {
    lockOf(section).unlock();
}

HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES /*security*/, BOOL initialOwner, LPCSTR name) noexcept try {
    if (name) return refuse(ERROR_NOT_SUPPORTED);
    const auto mutex = std::make_shared<MutexObject>();
    if (initialOwner) heldMutexes().wait(mutex, 0);
    return eq::standin::kernelHandles().add(mutex);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) noexcept try {
    const auto mutex = eq::standin::findKernelObject<MutexObject>(object);
    return mutex ? heldMutexes().wait(mutex, milliseconds) : WAIT_FAILED;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY, WAIT_FAILED);
}

BOOL WINAPI ReleaseMutex(HANDLE object) noexcept {
    const auto mutex = eq::standin::findKernelObject<MutexObject>(object);
    if (!mutex) return FALSE;

    switch (mutex->release()) {
    case MutexObject::Release::NotOwner:
        return refuse(ERROR_NOT_OWNER);
    case MutexObject::Release::Free:
        heldMutexes().forget(mutex);
        break;
    case MutexObject::Release::StillHeld:
        break;
    }
    return TRUE;
}

BOOL WINAPI CloseHandle(HANDLE object) noexcept {
    if (eq::standin::kernelHandles().remove(object)) return TRUE;
    return refuse(ERROR_INVALID_HANDLE);
}

DWORD WINAPI GetCurrentThreadId() noexcept {
    thread_local const auto id = static_cast<DWORD>(gettid());
    return id;
}
