#include "support/Mutex.h"

#include "support/DebugLog.h"

#include <cstdlib>
#include <utility>

namespace eq {

namespace {

std::string failureText(const char* operation, int line, const char* name, const std::string& error) {
    constexpr char File[] = "wedge/Mutex_Win32Impl";
    return std::string(operation) + "[" + File + ", " + std::to_string(line) + "] threw exception " + name +
           ", with context: Error: " + error;
}

std::string waitError(DWORD result, DWORD errorCode) {
    const std::string call = "WaitForSingleObject returned ";
    switch (result) {
    case WAIT_ABANDONED:
        return call + "WAIT_ABANDONED";
    case WAIT_TIMEOUT:
        return call + "WAIT_TIMEOUT";
    default:
        return call + "WAIT_FAILED error " + std::to_string(errorCode);
    }
}

} // namespace

Mutex::Mutex() : handle(CreateMutexA(SharedSecurityAttributes(), FALSE, nullptr)) {
    if (handle != nullptr) return;
    DebugPrint("CreateMutexA() returned error %ld", static_cast<long>(GetLastError()));
    std::abort();
}

Mutex::~Mutex() {
    try {
        Unlock();
    } catch (const std::exception&) {
        // The destructor can do nothing about a failed unlock.
    }
    CloseHandle(handle);
    handle = nullptr;
}

void Mutex::Lock() {
    constexpr int LongWaits = 9;
    const std::uint32_t thread = GetCurrentThreadId();
    if (thread == ownerThread.load(std::memory_order_relaxed)) {
        ++recursionCount;
        return;
    }
    DWORD result = wait(0);
    for (int i = 0; i < LongWaits && result != WAIT_OBJECT_0; ++i) result = wait(INFINITE);
    if (result != WAIT_OBJECT_0) {
        const DWORD errorCode = GetLastError();
        releaseHolds();
        throw lock_failure(failureText("Mutex::Lock()", __LINE__, "lock_failure", waitError(result, errorCode)));
    }
    ownerThread.store(thread, std::memory_order_relaxed);
    recursionCount = 1;
}

void Mutex::Unlock() {
    if (GetCurrentThreadId() != ownerThread.load(std::memory_order_relaxed)) return;
    if (--recursionCount != 0) return;
    ownerThread.store(NoThread, std::memory_order_relaxed);
    if (!releaseHolds()) {
        throw unlock_failure(
            failureText("Mutex::Unlock()", __LINE__, "unlock_failure", "ReleaseMutex returned false."));
    }
}

DWORD Mutex::wait(DWORD milliseconds) {
    const DWORD result = WaitForSingleObject(handle, milliseconds);
    if (result == WAIT_ABANDONED) holds = 0; // the count belonged to the thread that has ended
    if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) ++holds;
    return result;
}

bool Mutex::releaseHolds() {
    bool released = true;
    // Clear the count while this thread still holds the mutex: after the last release, the count belongs to the next
    // holder.
    for (std::uint32_t left = std::exchange(holds, 0U); left != 0; --left) {
        released = ReleaseMutex(handle) != FALSE && released;
    }
    return released;
}

MutexEntry::~MutexEntry() {
    try {
        mutex.Unlock();
    } catch (const std::exception&) {
        // Ignore the failure, because another exception may already be leaving the scope.
    }
}

} // namespace eq
