#pragma once

#include "tools/equalize/settings/Bell.h"

#include <string>
#include <vector>

namespace eq {

/// Bells and a volume as other equalizers read them: peak filters of the biquad form, for one rate. Each number has as
/// many digits as it takes to find the same parameters of the effect again.
struct BellExport {
    int sampleRate;
    double volume; ///< dB
    std::vector<Bell> bells;

    /// The text of Equalizer APO.
    [[nodiscard]] std::string equalizerApoText() const;
    /// A filter chain of PipeWire, for two channels.
    [[nodiscard]] std::string pipewireText() const;
};

} // namespace eq
