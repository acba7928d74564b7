#include "tools/equalize/FactoryPresets.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace eq {

namespace {

constexpr const char* Extension = ".preset";

/// Returns the folder of the factory presets: in the folder of the program, or below the prefix of the installation.
/// Returns an empty path if there is none.
std::filesystem::path presetFolder() {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const char* const place : {"presets", "../share/parametric-equalizer/presets"}) {
        std::filesystem::path folder = (program / place).lexically_normal();
        if (std::filesystem::is_directory(folder)) return folder;
    }
    return {};
}

/// Returns the text after "# About:" in a preset, or an empty text.
std::string aboutOf(const std::filesystem::path& preset) {
    constexpr std::string_view Mark = "# About:";
    std::ifstream stream(preset);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(Mark)) return std::string(trim(line.substr(Mark.size())));
    return {};
}

std::vector<std::filesystem::path> factoryPresets() {
    std::vector<std::filesystem::path> presets;
    const std::filesystem::path folder = presetFolder();
    if (folder.empty()) return presets;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == Extension) presets.push_back(entry.path());
    std::ranges::sort(presets);
    return presets;
}

} // namespace

std::filesystem::path presetFileOf(const std::string& fileOrName) {
    std::error_code error;
    const auto status = std::filesystem::status(fileOrName, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_directory(status)) return fileOrName;
    for (const std::filesystem::path& preset : factoryPresets())
        if (preset.stem() == fileOrName) return preset;
    throw FileError(fileOrName + ": No such file or factory preset; see --list-presets");
}

std::string factoryPresetList() {
    const std::vector<std::filesystem::path> presets = factoryPresets();
    if (presets.empty())
        throw FileError(
            "the factory presets are missing: they are neither beside the program nor installed; install them again");
    std::size_t width = 0;
    for (const std::filesystem::path& preset : presets) width = std::max(width, preset.stem().string().size());
    std::string text;
    for (const std::filesystem::path& preset : presets) {
        std::string name = preset.stem();
        name.resize(width, ' ');
        text += name + "  " + aboutOf(preset) + "\n";
    }
    return text;
}

} // namespace eq
