#pragma once

#include "tools/equalize/EffectSeries.h"

#include <vector>

namespace eq {

/// Equalizes any number of channels with the same settings. There is one series of effects for every two
/// channels. If the number of channels is odd, the second channel of the last series is silent.
class MultichannelEffect {
public:
    /// `blockFrames` is the largest number of frames in one call of the effect.
    MultichannelEffect(const EffectLibrary& library, const Settings::Series& settings, int channels, int sampleRate,
                       int blockFrames);

    [[nodiscard]] int channels() const { return m_channels; }
    [[nodiscard]] int delay() const { return m_effects.front().delay(); }

    /// Equalizes `frames` frames in place.
    void process(float* interleaved, int frames) noexcept;

private:
    void processBlock(float* interleaved, int frames) noexcept;
    [[nodiscard]] float* channel(int index) {
        return m_planes.data() + static_cast<std::ptrdiff_t>(index) * m_blockFrames;
    }

    int m_channels;
    int m_blockFrames;
    std::vector<EffectSeries> m_effects;
    std::vector<float> m_planes; ///< the channels one after the other, `m_blockFrames` samples each
};

} // namespace eq
