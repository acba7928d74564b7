#pragma once

#include "engine/ParameterArray.h"
#include "lv2/turtle/Names.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace eq::lv2 {

/// A file of `presets/`. The comments at its top contain its names and its purpose:
///
///     # Name: Voice
///     # Name[de]: Stimme
///     # About: speech and singing
///     band1.freq = 90
struct FactoryPreset {
    std::string id; ///< the file's name without extension
    Name name;
    std::string about;
    std::array<double, ParameterCount> values; ///< in the parameters' units; a default if the file has no value
};

/// Returns the presets of a folder, in the order of their ids. Throws InputError for a preset without a name in English
/// or for a tag, and for any other fault in a file.
[[nodiscard]] std::vector<FactoryPreset> readPresets(const std::filesystem::path& folder,
                                                     const std::vector<std::string>& tags);

} // namespace eq::lv2
