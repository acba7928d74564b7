#pragma once

#include <filesystem>
#include <string>

namespace eq {

/// Returns the file that the argument of --preset names: the path of a file, or else the name of a factory preset.
/// Throws FileError if there is no such file or preset.
[[nodiscard]] std::filesystem::path presetFileOf(const std::string& fileOrName);

/// Returns a line for each factory preset, with its name and its purpose. Throws FileError if no presets are installed.
[[nodiscard]] std::string factoryPresetList();

} // namespace eq
