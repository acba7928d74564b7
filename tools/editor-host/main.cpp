// Shows the editor of an effect in a window, as a host does.

#include "tools/common/Errors.h"
#include "tools/editor-host/EditorWindow.h"
#include "tools/editor-host/HostedEditor.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

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

void requireParameter(const HostedEditor& editor, int index, const char* option) {
    if (index < 0 || index >= editor.parameterCount())
        throw tool::UsageError(std::string(option) + ": there are parameters 0 to " +
                               std::to_string(editor.parameterCount() - 1));
}

/// Sets the parameter of an "INDEX=P".
void apply(const std::string& setting, HostedEditor& editor) {
    int index = 0;
    float value = 0.0F;
    char rest = 0;
    if (std::sscanf(setting.c_str(), "%d=%f%c", &index, &value, &rest) != 2)
        throw tool::UsageError("--set: \"" + setting + "\" is not INDEX=P");
    if (!(value >= 0.0F && value <= 1.0F)) throw tool::UsageError("--set: \"" + setting + "\": P must be 0 to 1");
    requireParameter(editor, index, "--set");
    editor.setParameter(index, value);
}

int run(int argc, char** argv) {
    CLI::App app("Shows the editor of an effect in a window, as a host does.", "editor-host");
    std::string library = libraryBesideProgram();
    bool log = false;
    bool printParameters = false;
    std::vector<std::string> settings;
    EditorWindow::Options options;
    app.add_option("LIBRARY", library, "The effect (default: the one beside this program)");
    app.add_flag("--log", log, "Print what the effect tells its host");
    app.add_flag("--print", printParameters, "Print the parameters when the window is closed");
    app.add_option("--set", settings,
                   "Set a parameter before the editor is opened: 0 is the top of its range, 1 the bottom; repeatable")
        ->type_name("INDEX=P")
        ->allow_extra_args(false);
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
    if (options.sweep) requireParameter(editor, *options.sweep, "--sweep");
    for (const std::string& setting : settings) apply(setting, editor);
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
