#pragma once

#include "tools/equalize/settings/Bell.h"

#include <string>
#include <vector>

namespace eq {

/// Bells and a volume for other equalizers. The export contains biquad peak filters for one rate. Each number has
/// enough digits to restore the same parameters of the effect.
struct BellExport {
    int sampleRate;
    double volume; ///< dB
    std::vector<Bell> bells;

    /// Returns the settings as a text for Equalizer APO.
    [[nodiscard]] std::string equalizerApoText() const;
    /// Returns the settings as a filter chain for PipeWire, with two channels.
    [[nodiscard]] std::string pipewireText() const;
};

} // namespace eq
