#pragma once

#include "engine/ParameterArray.h"
#include "lv2/turtle/Names.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace eq::lv2 {

/// A file of `presets/`. Comments in its head have its name and its purpose:
///
///     # Name: Voice
///     # Name[de]: Stimme
///     # About: speech and singing
///     band1.freq = 90
struct FactoryPreset {
    std::string id; ///< the file's name without extension
    Name name;
    std::string about;
    std::array<double, ParameterCount> values; ///< in the parameters' units; the defaults where the file has none
};

/// Returns the presets of a folder, in the order of their ids. Each must have a name in English and for each tag.
/// Throws InputError.
[[nodiscard]] std::vector<FactoryPreset> readPresets(const std::filesystem::path& folder,
                                                     const std::vector<std::string>& tags);

} // namespace eq::lv2
