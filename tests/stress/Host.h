#pragma once

#include "plugin/AEffect.h"
#include "tests/stress/Choices.h"
#include "tests/stress/HostWindows.h"
#include "tests/support/EqualizerReference.h"
#include "tests/support/LoadedLibrary.h"

#include <array>
#include <atomic>
#include <mutex>
#include <string>

/// An array in the middle of others whose contents must stay.
template <typename Element>
class Guarded {
public:
    /// `skew` elements further on than the allocation's alignment.
    explicit Guarded(std::size_t size, std::size_t skew = 0)
        : begin(64 + skew), end(begin + size), storage(end + 64, canary) {}

    Element* data() { return storage.data() + begin; }
    [[nodiscard]] std::size_t size() const { return end - begin; }
    /// Nothing was written around the array, or not into it either.
    void check(bool isUntouched = false) const {
        for (std::size_t i = 0; i < storage.size(); ++i)
            require((i >= begin && i < end && !isUntouched) || storage[i] == canary, "a buffer is not as it should be");
    }

private:
    static constexpr Element canary = std::is_same_v<Element, char> ? Element('#') : Element(-8.7654321e17f);

    std::size_t begin;
    std::size_t end;
    std::vector<Element> storage;
};
using GuardedSamples = Guarded<float>;
using GuardedText = Guarded<char>;

/// Those that use an instance: the two that process take turns.
enum User { HostMain, Audio, Control1, Control2, UserCount };

/// An instance as the threads of a host share it.
struct Instance {
    /// Each is held by a user. A host calls nothing else while it ends an instance, switches it off or changes its
    /// block size: these hold all.
    std::array<std::mutex, UserCount> users;
    [[nodiscard]] auto allUsers() { return std::scoped_lock(users[0], users[1], users[2], users[3]); }

    AEffect* effect = nullptr;
    void* window = nullptr;
    int32 program = 0;
    /// Whether what went in since the last switching off was of moderate size: then what comes out is finite.
    bool isModerate = true;
    /// A steady instance keeps these parameters, and has to sound like a twin on which nothing else is done.
    AEffect* twin = nullptr;
    Values parameters{};
};

/// A loaded library and its instances, of which the first is steady.
struct Host {
    explicit Host(const std::string& path);
    [[nodiscard]] AEffect* make() const;

    const LoadedLibrary library;
    const HostWindows* const windows;
    std::array<Instance, 4> instances;
};

/// The steady instance: no such one tells of changes.
inline std::atomic<AEffect*> steadyEffect = nullptr;

/// Sends a command that has this answer.
void dispatch(AEffect* effect, int32 opcode, intptr answer, int32 index = 0, intptr value = 0, void* ptr = nullptr,
              float opt = 0.0f);
/// Asks for a text by one of the opcodes, and looks at the buffer.
std::string textOf(AEffect* effect, int32 opcode, int32 index);
/// A value that the hosts of this program set, and whether a value is one that somebody has set.
float parameterValue(Choices& choices);
bool isSomebodys(float value);
/// Switches an instance, which nobody else uses now, off and on. That must leave nothing of the audio before.
void switchOff(Instance& instance, Choices& choices);

// A step of each thread.
void stepAsMain(Host& host, Choices& choices);
void stepAsAudio(Host& host, Choices& choices);
void stepAsControl(Host& host, User self, Choices& choices);

/// Makes an instance, and ends it with its window, be its editor open or not.
void begin(Host& host, Instance& instance, Choices& choices);
void end(Host& host, Instance& instance);
