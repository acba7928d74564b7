// A badly behaved host. The program calls the library through the effect's record in permitted but unusual ways, on
// several threads. It checks everything that the record promises.
//
//   hostile-hosts [--seconds N] [--steps N] [--seed N]    runs without end if --seconds and --steps are missing
//
// Each round breaks a language file, repairs it, loads the library, and calls it on all threads. Exits with 1 after the
// first fault, and with 3 if a round hangs. A seed repeats the decisions of each thread. --steps counts the steps of
// the main thread.

#include "tests/stress/Choices.h"
#include "tests/stress/Instance.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <iostream>
#include <sstream>
#include <thread>

namespace eq {

namespace {

using Clock = std::chrono::steady_clock;
using Instances = std::array<std::unique_ptr<Instance>, 4>;

constexpr int TurnsOfARound = 5;
constexpr int StepsOfATurn = 30;

constexpr std::uint64_t Endless = 1'000'000'000;
std::map<std::string, std::uint64_t> options = {{"--seconds", Endless}, {"--steps", Endless}, {"--seed", 1}};

std::atomic<std::uint64_t> rounds = 0;

/// A host that has loaded the library.
struct LoadedHost : private LoadedLibrary, Host {
    explicit LoadedHost(const std::string& path)
        : LoadedLibrary(path),
#ifdef _WIN32
          Host{find<EffectMainProc>("main"), *hostWindows()} {
#else
          Host{find<EffectMainProc>("main"), *find<decltype(&hostWindows)>("hostWindows")()} {
#endif
              ++counts.loads;
}
}; // namespace

/// Ends the program if no round ends within three minutes.
[[noreturn]] void watch() {
    for (std::uint64_t seen = 0;; seen = rounds) {
        std::this_thread::sleep_for(std::chrono::minutes(3));
        if (rounds == seen) violation("a round hangs", 3);
    }
}

bool goesOn() {
    static const Clock::time_point end = Clock::now() + std::chrono::seconds(options["--seconds"]);
    return options["--steps"] > 0 && Clock::now() < end;
}

/// Loads the library next to a broken language file, repairs the file, and uses the library again.
void breakAndRepair(const std::string& library, const TemporaryFolder& folder) {
    std::stringstream whole;
    whole << std::ifstream(EQ_LANGUAGE_FILE, std::ios::binary).rdbuf();
    std::string texts = whole.str();
    const bool isSurelyBroken = oneIn(2);
    if (isSurelyBroken) {
        texts += "\nno equals sign here\n";
    } else {
        for (std::size_t i = below(8); i > 0; --i) texts[below(texts.size())] = static_cast<char>(integer());
        // Defines a unit before the file's own definition, because the first definition counts.
        texts.insert(0, "[Parametric Equalizer]\nIDS_DB = " + std::string(below(60), oneIn(2) ? 'x' : '\xE9') + "\n");
    }
    folder.write("Equalizer1033.lng", texts);
    ++counts.brokenFiles;
    const LoadedHost host(library);
    for (int i = 0; i < 2; ++i)
        require(!host.tryEffect() || !isSurelyBroken, "main returned an effect despite a broken language file");
    folder.write("Equalizer1033.lng", whole.str());
    require(host.tryEffect() || !isSurelyBroken, "main returned no effect after the repair of the language file");
}

/// Uses the instances on five threads. Two threads process audio, each for half of the instances. Two threads set and
/// read parameters. This thread sends commands.
void useTogether(const Host& host, const Instances& instances) {
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (std::size_t self = 0; self < 4; ++self)
        threads.emplace_back([&, self, seed = choices()()] {
            choices().seed(seed);
            do {
                if (self < 2) {
                    instances[2 * below(2) + self]->processBlock();
                } else if (oneIn(200)) {
                    host.tryEffect();
                } else {
                    oneOf(instances)->useParameters();
                }
                std::this_thread::yield();
            } while (!isOver);
        });
    for (int i = 0; i < StepsOfATurn && goesOn(); ++i, --options["--steps"]) instances[below(4)]->command();
    isOver = true;
    for (std::thread& thread : threads) thread.join();
}

void playHost(const std::string& library) {
    const LoadedHost host(library);
    const std::size_t windowsBefore = host.windows.all ? host.windows.all() : 0;
    {
        Instances instances;
        for (int turn = 0; turn < TurnsOfARound && goesOn(); ++turn) {
            for (auto& instance : instances) {
                if (!instance || oneIn(4)) instance = std::make_unique<Instance>(host, &instance == &instances[0]);
                if (oneIn(2)) instance->changeBlockSize();
                if (oneIn(2)) instance->switchOff();
            }
            useTogether(host, instances);
        }
    }
    require(!host.windows.all || host.windows.all() == windowsBefore, "windows are left after the round");
}

} // namespace eq

} // namespace eq

int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape): ends the program with the reason
    using namespace eq;
    for (int i = 1; i + 1 < argc; i += 2) options[argv[i]] = std::strtoull(argv[i + 1], nullptr, 10);
    if (argc % 2 == 0 || options.size() != 3) {
        std::cerr << "usage: hostile-hosts [--seconds N] [--steps N] [--seed N]\n";
        return 64;
    }
    std::cout << "seed " << options["--seed"] << std::endl;
    choices().seed(static_cast<std::uint32_t>(options["--seed"]));
    const TemporaryFolder folder;
    const std::string library = folder.path(std::filesystem::path(EQ_LIBRARY_PATH).filename().string());
    std::filesystem::copy_file(EQ_LIBRARY_PATH, library);
    std::thread(watch).detach();
    for (; goesOn(); ++rounds) {
        breakAndRepair(library, folder);
        playHost(library);
    }
    std::cout << counts.blocks << " blocks, " << counts.samples << " samples, " << counts.editors << " editors, "
              << counts.loads << " loads, " << counts.brokenFiles << " broken files" << std::endl;
    require(counts.samples > 0 && counts.editors > 0, "no samples were processed, or no editor was opened");
}
