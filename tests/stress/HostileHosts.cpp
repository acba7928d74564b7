// A bad host: drives the library through its record as hosts are allowed to, but in ways in which few do, from several
// threads, and looks at everything that the record promises.
//
//   hostile-hosts [--seconds N | --steps N] [--seed N]
//
// Runs in rounds. Each breaks a language file, mends it, loads the library and lets the threads at it. Exits with 1 at
// the first thing that is wrong, and with 3 if something hangs. A seed gives each thread the same decisions again;
// --steps counts those of the main thread.

#include "tests/stress/Host.h"
#include "tests/stress/LanguageFolder.h"
#include "tests/stress/Report.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t StepsOfARound = 150;

struct Options {
    std::uint64_t seconds = 5;
    std::uint64_t steps = UINT64_MAX;
};

/// The built library, and on Linux also the one with windows for its hosts.
constexpr const char* Libraries[] = {EQ_LIBRARIES};

bool parse(int argc, char** argv, Options& options) {
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        const std::uint64_t value = std::strtoull(argv[i + 1], nullptr, 10);
        if (name == "--seconds") {
            options.seconds = value;
        } else if (name == "--steps") {
            options.steps = value;
            options.seconds = UINT32_MAX;
        } else if (name == "--seed") {
            seedOfRun = value;
        } else {
            return false;
        }
    }
    return argc % 2 == 1;
}

/// Whether there is time, and there are steps, for one more of the main thread.
class Limits {
public:
    explicit Limits(const Options& options)
        : steps(options.steps), end(Clock::now() + std::chrono::seconds(options.seconds)) {}
    [[nodiscard]] bool goOn() const { return stepsBegun[HostMain] < steps && Clock::now() < end; }

private:
    std::uint64_t steps;
    Clock::time_point end;
};

/// The next step of the calling thread.
Choices nextStep() {
    const std::uint64_t step = ++stepsBegun[ownRole];
    return {seedOfRun, ownRole, step};
}

/// Makes an effect if one is given, and shows all its texts.
bool makesEffect(Host& host) {
    AEffect* const effect = host.tryMake();
    if (!effect) return false;
    for (int32 i = 0; i < ParameterCount; ++i) textOf(effect, effGetParamDisplay, i);
    close(effect);
    return true;
}

/// Loads a library beside a broken language file, and goes on when it is mended.
void breakAndMend(LanguageFolder& folder, const std::string& library) {
    ownRole = Files;
    Choices choices = nextStep();
    const bool isSure = folder.breakOne(choices);
    Host host(library);
    for (std::size_t i = choices.between(1, 3); i > 0; --i) {
        const bool made = makesEffect(host);
        require(!made || !isSure, "main gave an effect beside a broken language file");
    }
    folder.mend();
    if (isSure) require(makesEffect(host), "main gave no effect when the language file was mended");
}

void work(Host& host, Role role, void (*step)(Host&, Choices&), const std::atomic<bool>& isOver) {
    ownRole = role;
    Watchdog::watch(true);
    while (!isOver) {
        Choices choices = nextStep();
        step(host, choices);
        std::this_thread::yield();
    }
    Watchdog::watch(false);
}

/// Lets the threads at the library.
void playHost(const std::string& library, const Limits& limits, bool& hadWindows) {
    Host host(library);
    hadWindows = hadWindows || host.windows;
    const int windowsBefore = host.windows ? host.windows.all() : 0;
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (const Role role : {Audio1, Audio2})
        threads.emplace_back(work, std::ref(host), role, stepAsAudio, std::ref(isOver));
    for (const Role role : {Control1, Control2})
        threads.emplace_back(work, std::ref(host), role, stepAsControl, std::ref(isOver));

    ownRole = HostMain;
    Choices first = nextStep();
    fill(host, first);
    for (std::uint64_t i = 1; i < StepsOfARound && limits.goOn(); ++i) {
        Choices choices = nextStep();
        stepAsMain(host, choices);
    }
    isOver = true;
    for (std::thread& thread : threads) thread.join();
    clear(host);
    if (host.windows) require(host.windows.all() == windowsBefore, "windows are left over");
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::fprintf(stderr, "usage: hostile-hosts [--seconds N | --steps N] [--seed N]\n");
        return 64;
    }
    std::printf("seed %llu\n", static_cast<unsigned long long>(seedOfRun));
    std::fflush(stdout);
    bool hadWindows = false;
    try {
        LanguageFolder folder(std::filesystem::path{Libraries[0]}.parent_path());
        Watchdog::start();
        Watchdog::watch(true);
        const Limits limits(options);
        for (std::size_t round = 0; limits.goOn(); ++round) {
            const std::string copy = folder.copyLibrary(Libraries[round % std::size(Libraries)]);
            breakAndMend(folder, copy);
            playHost(copy, limits, hadWindows);
        }
    } catch (const std::exception& error) {
        violation(error.what());
    }
    if (printCounts(hadWindows)) return 0;
    std::printf("VIOLATION: of some kind nothing was done\n");
    return 1;
}
