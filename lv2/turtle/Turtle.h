#pragma once

#include "lv2/turtle/FactoryPreset.h"
#include "lv2/turtle/Names.h"

#include <string>
#include <vector>

namespace eq::lv2 {

/// The product's version in the form that LV2 requires.
struct BundleVersion {
    int minor;
    int micro;
};

// The functions below return the texts of the bundle's files. Each function throws InputError if a text is missing.

/// Returns "manifest.ttl", the list of the plug-ins, the editor and the presets.
[[nodiscard]] std::string manifestText(const std::vector<FactoryPreset>& presets, bool hasEditor);
/// Returns "parametric-equalizer.ttl", the description of the plug-ins, their ports, and the editor.
[[nodiscard]] std::string pluginText(const LanguageSources& languages, BundleVersion version, bool hasEditor);
/// Returns "presets.ttl", the names and the values of the presets.
[[nodiscard]] std::string presetText(const std::vector<FactoryPreset>& presets);

} // namespace eq::lv2
