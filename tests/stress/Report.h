#pragma once

#include <atomic>
#include <cstdint>
#include <string>

/// The threads of the program, each with a sequence of decisions of its own.
enum Role : std::uint64_t { HostMain, Audio1, Audio2, Control1, Control2, Files, RoleCount };

/// What was done, by kind.
struct Counts {
    std::atomic<std::uint64_t> calls, texts, blocks, samples, compared, editors, instances, loads, brokenFiles;
};
inline Counts counts{};

inline std::uint64_t seedOfRun = 0;
/// Steps that each thread has begun, as the watchdog sees them.
inline std::atomic<std::uint64_t> stepsBegun[RoleCount]{};
inline thread_local Role ownRole = HostMain;

/// Prints the seed, the thread, its step and what was wrong, and ends the program.
[[noreturn]] void violation(const std::string& what);

inline void require(bool holds, const char* what) {
    if (!holds) violation(what);
}

/// Ends the program when a thread that is at work begins no step for two minutes.
class Watchdog {
public:
    static void start();
    /// What the calling thread does from here on is watched, or is not.
    static void watch(bool on);
};

/// Prints the counts on a line. Gives whether something of every kind was done.
bool printCounts(bool withEditors);
