#pragma once

#include "lv2/turtle/FactoryPreset.h"
#include "lv2/turtle/Names.h"

#include <string>
#include <vector>

namespace eq::lv2 {

/// The product's version, as LV2 counts.
struct BundleVersion {
    int minor;
    int micro;
};

// The texts of the files of the bundle. Each throws InputError for a missing text.

/// "manifest.ttl": which plug-ins, presets and editors there are.
[[nodiscard]] std::string manifestText(const std::vector<FactoryPreset>& presets, bool hasEditor);
/// "parametric-equalizer.ttl": the plug-ins and their ports, and the editor.
[[nodiscard]] std::string pluginText(const LanguageSources& languages, BundleVersion version, bool hasEditor);
/// "presets.ttl": the values of the presets.
[[nodiscard]] std::string presetText(const std::vector<FactoryPreset>& presets);

} // namespace eq::lv2
