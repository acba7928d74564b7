#pragma once

#include <filesystem>
#include <string>

namespace eq {

/// Returns the file of the argument of --preset: a file of that path, or else the factory preset of that name. Throws
/// FileError if there is neither.
[[nodiscard]] std::filesystem::path presetFileOf(const std::string& fileOrName);

/// Returns a line for each factory preset: its name and what it is for. Throws FileError if none are installed.
[[nodiscard]] std::string factoryPresetList();

} // namespace eq
