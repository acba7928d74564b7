#include "tests/stress/Report.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <thread>

namespace {

constexpr const char* RoleNames[] = {"main", "audio 1", "audio 2", "control 1", "control 2", "files"};
static_assert(std::size(RoleNames) == RoleCount);

constexpr int SecondsOfPatience = 120;
constexpr int FailureStatus = 1;
constexpr int HangStatus = 3;

std::atomic<bool> watched[RoleCount]{};

[[noreturn]] void end(Role role, const std::string& what, int status) {
    std::printf("VIOLATION: seed %llu, thread %s, step %llu: %s\n", static_cast<unsigned long long>(seedOfRun),
                RoleNames[role], static_cast<unsigned long long>(stepsBegun[role].load()), what.c_str());
    std::fflush(stdout);
    std::_Exit(status);
}

void guard() {
    std::uint64_t seen[RoleCount]{};
    int quiet[RoleCount]{};
    for (;;) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        for (std::size_t role = 0; role < RoleCount; ++role) {
            const std::uint64_t now = stepsBegun[role].load();
            quiet[role] = watched[role] && now == seen[role] ? quiet[role] + 1 : 0;
            seen[role] = now;
            if (quiet[role] > SecondsOfPatience) end(static_cast<Role>(role), "it hangs", HangStatus);
        }
    }
}

} // namespace

void violation(const std::string& what) {
    end(ownRole, what, FailureStatus);
}

void Watchdog::start() {
    std::thread(guard).detach();
}

void Watchdog::watch(bool on) {
    watched[ownRole] = on;
}

bool printCounts(bool withEditors) {
    struct Row {
        const char* name;
        const std::atomic<std::uint64_t>& count;
    };
    const Row rows[] = {
        {"calls", counts.calls},         {"texts", counts.texts},       {"blocks", counts.blocks},
        {"samples", counts.samples},     {"compared", counts.compared}, {"editors", counts.editors},
        {"instances", counts.instances}, {"loads", counts.loads},       {"broken files", counts.brokenFiles},
    };
    bool all = true;
    const char* separator = "";
    for (const Row& row : rows) {
        std::printf("%s%llu %s", separator, static_cast<unsigned long long>(row.count.load()), row.name);
        separator = ", ";
        all = all && (row.count != 0 || (&row.count == &counts.editors && !withEditors));
    }
    std::printf("\n");
    return all;
}
