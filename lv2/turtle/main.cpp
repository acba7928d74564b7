// Writes the Turtle files of the LV2 bundle.
//   lv2-turtle BUNDLE LANGUAGES PRESETS MINOR MICRO [editor]

#include "lv2/turtle/Turtle.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

namespace {

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file);
    stream << text;
    stream.close();
    if (!stream) throw eq::lv2::InputError(file.string() + ": cannot be written");
}

} // namespace

int main(int argumentCount, char** arguments) {
    using namespace eq::lv2;
    if (argumentCount != 6 && argumentCount != 7) {
        std::fputs("usage: lv2-turtle BUNDLE LANGUAGES PRESETS MINOR MICRO [editor]\n", stderr);
        return 64;
    }
    try {
        const std::filesystem::path bundle = arguments[1];
        const bool hasEditor = argumentCount == 7;
        const LanguageSources languages(arguments[2]);
        const std::vector<FactoryPreset> presets = readPresets(arguments[3], languages.tags());
        write(bundle / "parametric-equalizer.ttl",
              pluginText(languages, {std::atoi(arguments[4]), std::atoi(arguments[5])}, hasEditor));
        write(bundle / "presets.ttl", presetText(presets));
        write(bundle / "manifest.ttl", manifestText(presets, hasEditor));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lv2-turtle: %s\n", error.what());
        return 1;
    }
}
