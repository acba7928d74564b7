// Shows the editor of an effect in a window, as a host does.

#include "tools/common/CommandLine.h"
#include "tools/common/RunTool.h"
#include "tools/common/Text.h"
#include "tools/editor-host/HostedEditor.h"
#include "tools/editor-host/Platform.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace eq {

namespace {

int run(int argc, char** argv) {
    CommandLine commandLine("editor-host", "Shows the editor of an effect in a window, as a host does.",
                            "  editor-host [OPTIONS] [LIBRARY]");
    std::string library = libraryBesideProgram();
    bool printParameters = false;
    std::vector<std::string> settings;
    WindowOptions options;
    commandLine.option("LIBRARY", library, "the effect (default: the one beside this program)");
    commandLine.flag("--log", options.log, "print the effect's calls to its host");
    commandLine.flag("--print", printParameters, "print the parameters when the window is closed");
    commandLine
        .option("--set", settings,
                "set a parameter before the editor is opened: 0 is the top of its range, 1 the bottom; repeatable")
        .value("INDEX=P")
        .oneValueEach();
    commandLine.option("--sweep", options.sweep, "move parameter INDEX up and down, as a host's automation does")
        .value("INDEX");
    commandLine.option("--screenshot", options.screenshot, "take a picture of the editor, as a PNG file, and end")
        .value("FILE");
    commandLine.option("--seconds", options.seconds, "end after SECONDS (with --screenshot: 1)").value("SECONDS");
    if (const auto exitCode = commandLine.parse(argc, argv)) return *exitCode;
    if (options.screenshot && !options.seconds) options.seconds = 1.0;

    HostedEditor editor(library, options.log);
    const int count = editor.parameterCount();
    if (options.sweep && (*options.sweep < 0 || *options.sweep >= count))
        throw UsageError("--sweep: " + std::to_string(*options.sweep) + " is not a parameter from 0 to " +
                         std::to_string(count - 1));
    for (const std::string& setting : settings) {
        const auto [index, p] = parseSetting(setting, count);
        editor.setParameter(index, static_cast<float>(p));
    }
    showEditor(editor, options);
    for (int i = 0; printParameters && i < count; ++i) std::printf("%s\n", editor.describe(i).c_str());
    return 0;
}

} // namespace

float sweepAt(double seconds) noexcept {
    constexpr double SweepSeconds = 4.0; // from one end to the other and back
    const double phase = std::fmod(seconds / SweepSeconds, 1.0);
    return static_cast<float>(1.0 - std::fabs(2.0 * phase - 1.0));
}

} // namespace eq

int main(int argc, char** argv) {
    return eq::runTool("editor-host", [&] { return eq::run(argc, argv); });
}
