#include "lv2/turtle/FactoryPreset.h"

#include "parameters/ParameterNames.h"
#include "parameters/ParameterTable.h"
#include "support/AsciiText.h"

#include <algorithm>
#include <charconv>

namespace eq::lv2 {

namespace {

constexpr std::string_view NameMark = "# Name";
constexpr std::string_view AboutMark = "# About:";

/// Reads a line "# Name: TEXT" or "# Name[TAG]: TEXT" into `name`.
void readName(const std::string& line, Name& name) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) return;
    const std::string text(trim(line.substr(colon + 1)));
    const std::string tag = line.substr(NameMark.size(), colon - NameMark.size());
    if (tag.empty())
        name.english = text;
    else if (tag.starts_with('[') && tag.ends_with(']'))
        name.translations[tag.substr(1, tag.size() - 2)] = text;
}

void readValue(const std::string& line, FactoryPreset& preset) {
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string_view key = trim(std::string_view(line).substr(0, equals));
    const std::string_view text = trim(std::string_view(line).substr(std::min(equals + 1, line.size())));
    const auto* const parameter =
        std::ranges::find_if(Parameters, [&](const Parameter& candidate) { return presetNameOf(candidate) == key; });
    if (parameter == std::end(Parameters)) throw InputError("there is no setting '" + std::string(key) + "'");
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const auto [lowest, highest] = scaleOf(parameter->kind).range;
    if (error != std::errc() || end != text.data() + text.size() || !(value >= lowest && value <= highest))
        throw InputError("'" + line + "' has no number in the range of the setting");
    preset.values[static_cast<std::size_t>(parameter - Parameters)] = value;
}

FactoryPreset readPreset(const std::filesystem::path& file, const std::vector<std::string>& tags) {
    FactoryPreset preset = {file.stem().string(), {}, {}, {}};
    std::ranges::transform(Parameters, preset.values.begin(), &Parameter::defaultValue);
    for (const std::string& line : linesOf(file)) {
        if (line.starts_with(NameMark))
            readName(line, preset.name);
        else if (line.starts_with(AboutMark))
            preset.about = trim(line.substr(AboutMark.size()));
        else if (!line.empty() && !line.starts_with('#'))
            readValue(line, preset);
    }
    std::vector<std::string> found;
    for (const auto& [tag, text] : preset.name.translations) found.push_back(tag);
    if (preset.name.english.empty() || preset.about.empty() || found != tags)
        throw InputError("it must have a name in English and in each language, and a line '" + std::string(AboutMark) +
                         "'");
    return preset;
}

} // namespace

std::vector<FactoryPreset> readPresets(const std::filesystem::path& folder, const std::vector<std::string>& tags) {
    std::vector<FactoryPreset> presets;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".preset") continue;
        try {
            presets.push_back(readPreset(entry.path(), tags));
        } catch (const InputError& error) {
            throw InputError(entry.path().string() + ": " + error.what());
        }
    }
    if (presets.empty()) throw InputError(folder.string() + ": it has no presets");
    std::ranges::sort(presets, {}, &FactoryPreset::id);
    return presets;
}

} // namespace eq::lv2
