// A bad host: drives the library through its record as hosts are allowed to, but in ways in which few do, from several
// threads, and looks at everything that the record promises.
//
//   hostile-hosts [--seconds N | --steps N] [--seed N]
//
// Runs in rounds. Each breaks a language file, mends it, loads the library and lets the threads at it. Exits with 1 at
// the first thing that is wrong, and with 3 if something hangs. A seed gives each thread the same decisions again;
// --steps counts those of the main thread.

#include "tests/stress/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <sstream>
#include <thread>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t StepsOfARound = 150;
/// Each round's sequences of decisions.
constexpr std::uint64_t TracksOfARound = 8;

struct Options {
    Clock::time_point end = Clock::now() + std::chrono::seconds(5);
    std::uint64_t steps = UINT64_MAX;
};

bool parse(int argc, char** argv, Options& options) {
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        const std::uint64_t value = std::strtoull(argv[i + 1], nullptr, 10);
        if (name == "--seconds") {
            options.end = Clock::now() + std::chrono::seconds(value);
        } else if (name == "--steps") {
            options = {Clock::time_point::max(), value};
        } else if (name == "--seed") {
            seedOfRun = value;
        } else {
            return false;
        }
    }
    return argc % 2 == 1;
}

std::atomic<std::uint64_t> rounds = 0;

/// Ends the program when it is in one round for minutes.
[[noreturn]] void watch() {
    for (std::uint64_t seen = 0;; seen = rounds) {
        std::this_thread::sleep_for(std::chrono::minutes(3));
        if (rounds == seen) violation("it hangs", 3);
    }
}

/// Breaks the texts of a language file. Gives whether in a way that no reader lets pass.
bool breakTexts(std::string& texts, Choices& choices) {
    constexpr const char* NeverAllowed[] = {"\nno equals sign here\n", "\n<CODEPAGE 1252\n", "\n<NONSENSE> = 1\n",
                                            "\n<CODEPAGE 932>\n", "\n[Parametric Equalizer]\nIDS_DB\n"};
    ++counts.brokenFiles;
    if (choices.oneIn(2)) {
        texts += choices.of(NeverAllowed);
        return true;
    }
    for (std::size_t i = choices.below(8); i > 0; --i)
        texts[choices.below(texts.size())] = static_cast<char>(choices.next());
    if (choices.oneIn(4)) texts.resize(choices.below(texts.size()));
    // A unit word that goes ahead of the file's own.
    const std::string unit(choices.below(60), choices.oneIn(2) ? 'x' : '\xE9');
    texts.insert(0, "[Parametric Equalizer]\nIDS_DB = " + unit + "\n");
    return false;
}

/// Makes an effect if one is given, and shows all its texts.
bool makesEffect(const Host& host) {
    AEffect* const effect = host.make();
    if (!effect) return false;
    for (int32 i = 0; i < ParameterCount; ++i) textOf(effect, effGetParamDisplay, i);
    dispatch(effect, effClose, 1);
    return true;
}

/// Loads the library beside a broken language file, and goes on when it is mended.
void breakAndMend(const std::string& library, const TemporaryFolder& folder, Choices choices) {
    std::stringstream whole;
    whole << std::ifstream(EQ_LANGUAGE_FILE, std::ios::binary).rdbuf();
    std::string texts = whole.str();
    const bool isSure = breakTexts(texts, choices);
    folder.write("Equalizer1033.lng", texts);
    const Host host(library);
    for (int i = 0; i < 2; ++i)
        require(!makesEffect(host) || !isSure, "main gave an effect beside a broken language file");
    folder.write("Equalizer1033.lng", whole.str());
    require(makesEffect(host) || !isSure, "main gave no effect when the language file was mended");
}

/// Lets the threads at the library. Gives the steps that the main thread made.
std::uint64_t playHost(const std::string& library, const Options& options, std::uint64_t steps, std::uint64_t track) {
    Host host(library);
    const int windowsBefore = host.windows->all();
    Choices first(track, 0);
    for (Instance& instance : host.instances) begin(host, instance, first);
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (const User user : {Audio, Audio, Control1, Control2})
        threads.emplace_back([&host, &isOver, user, sequence = ++track] {
            for (std::uint64_t i = 0; !isOver; ++i) {
                Choices choices(sequence, i);
                user == Audio ? stepAsAudio(host, choices) : stepAsControl(host, user, choices);
                std::this_thread::yield();
            }
        });
    std::uint64_t done = 0;
    ++track;
    while (++done < StepsOfARound && steps + done < options.steps && Clock::now() < options.end) {
        Choices choices(track, done);
        stepAsMain(host, choices);
    }
    isOver = true;
    for (std::thread& thread : threads) thread.join();
    for (Instance& instance : host.instances) end(host, instance);
    require(host.windows->all() == windowsBefore, "windows are left over");
    return done;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::cerr << "usage: hostile-hosts [--seconds N | --steps N] [--seed N]\n";
        return 64;
    }
    std::cout << "seed " << seedOfRun << std::endl;
    try {
        const TemporaryFolder folder;
        const std::string library = folder.path(fs::path(EQ_LIBRARY_PATH).filename().string());
        fs::copy_file(EQ_LIBRARY_PATH, library);
        std::thread(watch).detach();
        for (std::uint64_t steps = 0; steps < options.steps && Clock::now() < options.end; ++rounds) {
            const std::uint64_t track = rounds * TracksOfARound;
            breakAndMend(library, folder, Choices(track, 0));
            steps += playHost(library, options, steps, track + 1);
        }
    } catch (const std::exception& error) {
        violation(error.what());
    }
    std::cout << counts.blocks << " blocks, " << counts.samples << " samples, " << counts.editors << " editors, "
              << counts.loads << " loads, " << counts.brokenFiles << " broken files" << std::endl;
    if (counts.samples == 0 || counts.editors == 0) violation("of some kind nothing was done");
}
