#pragma once

#include "plugin/AEffect.h"
#include "tests/stress/Choices.h"
#include "tests/stress/HostWindows.h"
#include "tests/stress/Report.h"
#include "tests/support/EqualizerReference.h"
#include "tests/support/LoadedLibrary.h"

#include <array>
#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <string>

/// What the effects call. It answers anything, and calls back into the effect from within.
intptr hostileCallback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt);
/// The calling thread's host does not know its own version.
inline thread_local bool knowsNoVersion = false;

#ifdef _WIN32
/// std::shared_mutex of the cross compiler's library lets a reader in beside a writer now and then.
class SharedMutex {
public:
    void lock() { AcquireSRWLockExclusive(&m_lock); }
    void unlock() { ReleaseSRWLockExclusive(&m_lock); }
    void lock_shared() { AcquireSRWLockShared(&m_lock); }
    void unlock_shared() { ReleaseSRWLockShared(&m_lock); }

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
};
#else
using SharedMutex = std::shared_mutex;
#endif

/// An instance as the threads of a host share it.
///
/// A host calls nothing else while it ends an instance, switches it off or changes its block size: these hold `use`
/// exclusively, all else shares it. One thread at a time processes, and the host's main thread has the editor.
struct Instance {
    SharedMutex use;
    std::mutex audio;
    AEffect* effect = nullptr;

    /// Whether what went in since the last switching off was of moderate size: then what comes out is finite.
    bool isModerate = true;
    int32 program = 0;
    void* window = nullptr;
    bool isEditorOpen = false;

    /// A steady instance keeps these parameters, and has to sound like a twin on which nothing else is done.
    AEffect* twin = nullptr;
    Values parameters{};
    [[nodiscard]] bool isSteady() const { return twin != nullptr; }
};

/// The windows that a library has for its hosts, if it has some.
struct HostWindows {
    explicit HostWindows(const LoadedLibrary& library);
    explicit operator bool() const { return make != nullptr; }

    decltype(&makeHostWindow) make;
    decltype(&destroyHostWindow) destroy;
    decltype(&countChildren) children;
    decltype(&countWindows) all;
    decltype(&pumpMessages) pump;
};

/// A loaded library and its instances.
class Host {
public:
    explicit Host(const std::string& path);

    /// What the library's `main` gives.
    AEffect* tryMake();
    /// Tries that as well, for a host that does not know its version.
    AEffect* make(Choices& choices);

    static constexpr std::size_t InstanceCount = 4;
    static constexpr std::size_t SteadyCount = 1;
    std::array<Instance, InstanceCount> instances;
    const LoadedLibrary library;
    const HostWindows windows;

private:
    const EffectMainProc main;
};

/// Set while the host has a steady instance: no such instance tells of changes.
inline std::atomic<AEffect*> steadyEffect = nullptr;

intptr dispatch(AEffect* effect, int32 opcode, int32 index = 0, intptr value = 0, void* ptr = nullptr,
                float opt = 0.0f);
void close(AEffect* effect);
/// Asks for a text by one of the opcodes, and looks at the buffer.
std::string textOf(AEffect* effect, int32 opcode, int32 index);

void setParameter(AEffect* effect, int32 index, float value);
/// A value that the hosts of this program set.
float parameterValue(Choices& choices);
/// Reads one, which must be a value that somebody has set.
void readParameter(Instance& instance, int32 index);

/// Switches an instance, which nobody else uses now, off and on. That must leave nothing of the audio before.
void switchOff(Instance& instance, Choices& choices);

// A step of each thread.
void stepAsMain(Host& host, Choices& choices);
void stepAsAudio(Host& host, Choices& choices);
void stepAsControl(Host& host, Choices& choices);

/// Makes all instances, and ends them with their windows.
void fill(Host& host, Choices& choices);
void clear(Host& host);
