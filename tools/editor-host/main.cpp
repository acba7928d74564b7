// Shows the editor of an effect in a window, as a host does.

#include "tools/common/Errors.h"
#include "tools/editor-host/EditorWindow.h"
#include "tools/editor-host/HostedEditor.h"

#include <cstdio>
#include <exception>
#include <string>

#include <CLI/CLI.hpp>

namespace {

constexpr int ExitFailure = 1;
constexpr int ExitUsage = 2;

std::string libraryBesideProgram() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string program = path;
    return program.substr(0, program.rfind('\\') + 1) + "Parametric Equalizer.dll";
}

void readyCommonControls() {
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_BAR_CLASSES;
    InitCommonControlsEx(&controls);
}

int run(int argc, char** argv) {
    CLI::App app("Shows the editor of an effect in a window, as a host does.", "editor-host");
    std::string library = libraryBesideProgram();
    bool log = false;
    bool printParameters = false;
    EditorWindow::Options options;
    app.add_option("LIBRARY", library, "The effect (default: the one beside this program)");
    app.add_flag("--log", log, "Print what the effect tells its host");
    app.add_flag("--print", printParameters, "Print the parameters when the window is closed");
    app.add_option("--sweep", options.sweep, "Move parameter INDEX up and down, as a host's automation does")
        ->type_name("INDEX");
    app.add_option("--screenshot", options.screenshot, "Take a picture of the editor, as a PNG file, and end")
        ->type_name("FILE");
    app.add_option("--seconds", options.seconds, "End after SECONDS (with --screenshot: 1)")->type_name("SECONDS");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : ExitUsage;
    }
    if (options.screenshot && !options.seconds) options.seconds = 1.0;

    readyCommonControls();
    HostedEditor editor(library, log);
    if (options.sweep && (*options.sweep < 0 || *options.sweep >= editor.parameterCount()))
        throw tool::UsageError("--sweep: there are parameters 0 to " + std::to_string(editor.parameterCount() - 1));
    EditorWindow window(editor, options);
    window.run();
    for (int i = 0; printParameters && i < editor.parameterCount(); ++i)
        std::printf("%s\n", editor.describe(i).c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const tool::UsageError& error) {
        std::fprintf(stderr, "editor-host: %s\n", error.what());
        return ExitUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "editor-host: %s\n", error.what());
        return ExitFailure;
    }
}
